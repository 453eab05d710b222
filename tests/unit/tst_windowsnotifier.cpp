// SPDX-License-Identifier: LicenseRef-Proprietary
// The notifier of Windows, with messages that this program sends to itself from a second process:
//   tst_windowsnotifier send WINDOW EVENT BYTES
#include "USB/I_USBNotifier.h"
#include "support/LogCapture.h"

#include <QGuiApplication>
#include <QWindow>
#include <QtTest>

#include <windows.h>

#include <dbt.h>

static void send(quint64 window, WPARAM event, const QByteArray& bytes)
{
    SendMessageW(HWND(window), WM_DEVICECHANGE, event, bytes.isEmpty() ? 0 : LPARAM(bytes.data()));
}

class tst_windowsnotifier : public QObject
{
    Q_OBJECT

    // A message about a device whose interface has that class.
    static QByteArray about(const QString& name, DWORD type = DBT_DEVTYP_DEVICEINTERFACE,
                            DWORD classStart = 0xA5DCBF10)
    {
        const QByteArray text(reinterpret_cast<const char*>(name.utf16()), 2 * name.size() + 2);
        const DWORD head[] = {DWORD(28 + text.size()), type, 0, classStart, 0, 0, 0};
        return QByteArray(reinterpret_cast<const char*>(head), sizeof head) + text;
    }

private slots:
    void reportsWhatAnotherProcessSends()
    {
        const QString unit = R"(\\?\USB#VID_16D0&PID_0C07#1#{a5dcbf10})";
        const int arrival = DBT_DEVICEARRIVAL, removal = DBT_DEVICEREMOVECOMPLETE;
        const std::tuple<int, QByteArray, QString> rows[] = {
            {arrival, about(unit), "+16d0:c07"},
            {removal, about(unit.toLower()), "-16d0:c07"},
            {DBT_DEVICEQUERYREMOVE, about(unit), ""},
            {DBT_DEVNODES_CHANGED, "", ""},
            {removal, about(unit, DBT_DEVTYP_VOLUME), ""},
            {removal, about(unit, DBT_DEVTYP_DEVICEINTERFACE, 0x4D1E55B2), "-16d0:c07"},
            {arrival, about(""), ""},
            {arrival, about(R"(\\?\USB#VID_16D0&PID_0C)"), ""},
            {arrival, about("vid_0001&pid_zzzzVID_0003&PID_0004"), "+1:0"},
            {arrival, about(QString(4000, QChar(0x6A5F)) + unit), "+16d0:c07"},
        };
        LogCapture log({"WindowsUSBNotifier"});
        QWindow window;
        const std::unique_ptr<USB::I_USBNotifier> notifier(
            USB::I_USBNotifier::create(nullptr, &window));
        QString seen;
        const auto record = [&seen](const char* sign) {
            return [&seen, sign](quint16 vid, quint16 pid) {
                seen += sign + QString::number(vid, 16) + ':' + QString::number(pid, 16);
            };
        };
        connect(notifier.get(), &USB::I_USBNotifier::USBAttachmentNotification, record("+"));
        connect(notifier.get(), &USB::I_USBNotifier::USBRemovalNotification, record("-"));
        for (const auto& [event, bytes, expected] : rows) {
            seen.clear();
            QProcess sender;
            sender.start(qApp->applicationFilePath(), {"send", QString::number(window.winId()),
                                                       QString::number(event), bytes.toHex()});
            QTRY_COMPARE_WITH_TIMEOUT(sender.state(), QProcess::NotRunning, 30'000);
            QCOMPARE(seen, expected);
        }
        // Within the process, memory goes on behind what the message says is its end.
        for (const int size : {28 + 2 * 16, 28, 12}) {
            send(window.winId(), arrival, char(size) + about("VID_16D0&PID_0C07").mid(1));
            QCOMPARE(seen, std::get<QString>(rows[9]));
        }
        QCOMPARE(log.lines(), QStringList());
    }
};

int main(int argc, char** argv)
{
    if (argc == 5 && argv[1] == QByteArray("send")) {
        send(QByteArray(argv[2]).toULongLong(), QByteArray(argv[3]).toUInt(),
             QByteArray::fromHex(argv[4]));
        return 0;
    }
    const QGuiApplication application(argc, argv);
    tst_windowsnotifier test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_windowsnotifier.moc"
