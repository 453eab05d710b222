// The application's fonts in a program that ships no font files.
#include "Common/FontHelper.h"
#include "support/LogCapture.h"

#include <QTest>

class tst_fonthelper : public QObject
{
    Q_OBJECT

private slots:
    void missingFilesLeaveTheDefaultFont()
    {
        LogCapture log({"FontHelper"});
        const Common::FontHelper helper;
        QCOMPARE(log.messages(), QStringList("WARN Could not load ProximaNova font"));
        QCOMPARE(helper.font(), QFont());
        QCOMPARE(helper.boldFont(), QFont());
    }
};

QTEST_MAIN(tst_fonthelper)
#include "tst_fonthelper.moc"
