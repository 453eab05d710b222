// SPDX-License-Identifier: LicenseRef-Proprietary
import QtQuick 2.9
import QtTest 1.2
import AquenSolvar 1.0
import AquenSolvar.Device 1.0
import AquenSolvar.Tasks 1.0
import Common 1.0
import Common.File 1.0
import QsLog 1.0
import SLog 1.0
import UnderscoreQML 1.0 as UnderscoreQML
import USB 1.0

// Each native type that documents may use: the document loads only when all are registered.
TestCase {
    name: "Registration"

    AqSolWatcher {}
    AquenSolvarListModel {}
    AquenSolvarFilterProxyModel {}
    AquenSolvarFirmwareUpdateTask {}
    LibusbDeviceEnumerator {}
    FontHelper { id: fonts }
    Component { id: directory; TemporaryDirWrapper {} }

    function test_types() {
        compare(unknownMetaTypes, []);
        [BuildOS.buildOSString, BuildType.buildTypeString, BuildVersion.versionNumberString,
         CppToQml.qml_assert, Paths.resourceDirectory, QsLogHelpers.qml_RelativeSrcDir,
         SLog.track].forEach(function(operation) { compare(typeof operation, "function"); });
        compare(AquenSolvarTaskFactory.makeFirmwareUploadTask(null).uploadFirmware(), false);
        compare([PrinterCompatibility.MendrelNoUpdate, PrinterCompatibility.CompatMendrelUpdate,
                 Device.SOLVAR_DFU], [1, 13, 3]);
        compare([fonts.font.family, fonts.boldFont.bold], ["Open Sans", true]);
        compare(UnderscoreQML.Underscore._.uniq([1, 2, 1]), [1, 2]);
    }

    function test_temporary_directory() {
        var temporary = directory.createObject(null);
        temporary.autoRemove = false;
        verify(!temporary.autoRemove);
        temporary.autoRemove = true;
        var file = temporary.path + "/note";
        verify(FileIO.writeFile(file, "text"));
        compare(FileIO.readFile(file), "text");
        temporary.destroy();
        wait(0);
        compare(FileIO.readFile(file), "");
    }
}
