import QtQuick 2.9
import QtTest 1.2
import UnderscoreQML 1.0 as UnderscoreQML

TestCase {
    name: "UnderscoreQML"

    function test_library_is_there() {
        compare(UnderscoreQML.Underscore._.uniq([1, 2, 1]), [1, 2]);
        compare(UnderscoreQML.Underscore._.VERSION.split(".").length, 3);
    }
}
