// SPDX-License-Identifier: LicenseRef-Proprietary
// The executable's own options, Qt's beside them, unknown ones, and no display.
#include <QProcess>
#include <QTest>

class tst_commandline : public QObject
{
    Q_OBJECT

private slots:
    void answers()
    {
        // The arguments, the status, what is printed.
        const QStringList rows[] = {
            {"-h", "0", "Usage: " UPDATER " [options]\n"},
            {"-platform offscreen --version", "0", "AquenSolvarUpdater " VERSION "\n"},
            {"unit", "2", "Unexpected argument 'unit'.\nUsage: "},
            {"-platform xcb -display none -reverse --bogus", "2",
             "Unknown option 'bogus'.\nUsage: "},
            {"-platform xcb -display none", "1", "AquenSolvarUpdater: cannot open a display."},
            {"-platform=offscreen", "2", "Unknown option 'platform'.\nUsage: "},
        };
        for (const QStringList& row : rows) {
            QProcess updater;
            updater.setProcessChannelMode(QProcess::MergedChannels);
            updater.start(UPDATER, row[0].split(' '));
            QVERIFY(updater.waitForFinished());
            QCOMPARE(QString::number(updater.exitCode()), row[1]);
            const QByteArray printed = updater.readAll();
            QVERIFY2(QString(printed).contains(row[2]), printed);
        }
    }
};

QTEST_GUILESS_MAIN(tst_commandline)
#include "tst_commandline.moc"
