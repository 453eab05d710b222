#include "Common/Logging/IniDocument.h"

#include <QtTest>

using Common::IniDocument;

namespace {

QStringList sectionNames(const IniDocument& document)
{
    QStringList names;
    for (const Common::IniSection& section : document.sections())
        names.append(section.name());
    return names;
}

} // namespace

class IniDocumentTest : public QObject
{
    Q_OBJECT

private slots:
    void readsSectionsInOrder()
    {
        const auto document = IniDocument::parse("\xEF\xBB\xBF; comment\r\n"
                                                 "  # another = one\r\n"
                                                 "\r\n"
                                                 "[ Zebra ]\r\n"
                                                 "  Level =  INFO  \r\n"
                                                 "\t[apple]\n"
                                                 "file=a=b;c # kept\n"
                                                 "empty=\n"
                                                 "gr\xC3\xB6\xC3\x9F"
                                                 "e=\xE6\xB4\x97");
        QVERIFY(document);
        QCOMPARE(sectionNames(*document), QStringList({"Zebra", "apple"}));
        const Common::IniSection* zebra = document->section("zEBRA");
        QVERIFY(zebra);
        QCOMPARE(zebra->value("lEVEL").value_or("none"), QStringLiteral("INFO"));
        QVERIFY(!zebra->value("file"));
        const Common::IniSection* apple = document->section("APPLE");
        QCOMPARE(apple->value("file").value_or("none"), QStringLiteral("a=b;c # kept"));
        QCOMPARE(apple->value("empty").value_or("none"), QString());
        QCOMPARE(apple->value(QStringLiteral("gr\u00F6\u00DFe")).value_or("none"),
                 QStringLiteral("\u6D17"));
        QVERIFY(!document->section("pear"));
    }

    void aRepeatedSectionContinuesTheFirst()
    {
        const auto document =
            IniDocument::parse("[One]\na=1\nb=1\n[two]\na=2\n[ONE]\nB=3\nc=3\n[one]\n");
        QVERIFY(document);
        QCOMPARE(sectionNames(*document), QStringList({"One", "two"}));
        const Common::IniSection* one = document->section("one");
        QCOMPARE(one->value("a").value_or("none"), QStringLiteral("1"));
        QCOMPARE(one->value("b").value_or("none"), QStringLiteral("3"));
        QCOMPARE(one->value("c").value_or("none"), QStringLiteral("3"));
    }

    void judgesEachLine_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<bool>("valid");
        QTest::newRow("empty") << QByteArray() << true;
        QTest::newRow("byte order mark alone") << QByteArray("\xEF\xBB\xBF") << true;
        QTest::newRow("setting above the first section") << QByteArray("a=1\n[s]\n") << true;
        QTest::newRow("bare word") << QByteArray("[s]\nlevel\n") << false;
        QTest::newRow("no key") << QByteArray("[s]\n = INFO\n") << false;
        QTest::newRow("section not closed") << QByteArray("[s\n") << false;
        QTest::newRow("lone bracket") << QByteArray("[") << false;
        QTest::newRow("empty name") << QByteArray("[ ]\n") << false;
        QTest::newRow("text after a section") << QByteArray("[s] ; why\n") << false;
        QTest::newRow("two brackets") << QByteArray("[s]]\n") << false;
        QTest::newRow("second byte order mark") << QByteArray("[s]\n\xEF\xBB\xBF[t]\n") << false;
        QTest::newRow("largest") << QByteArray(IniDocument::maximumSize, '\n') << true;
        QTest::newRow("too large") << QByteArray(IniDocument::maximumSize + 1, '\n') << false;
        QTest::newRow("binary") << QByteArray("\x7F"
                                              "ELF\x02\x01\0\0\xFF",
                                              9)
                                << false;
    }
    void judgesEachLine()
    {
        QFETCH(QByteArray, text);
        QFETCH(bool, valid);
        QCOMPARE(IniDocument::parse(text).has_value(), valid);
    }
};

QTEST_APPLESS_MAIN(IniDocumentTest)
#include "tst_inidocument.moc"
