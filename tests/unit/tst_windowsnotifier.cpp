// SPDX-License-Identifier: LicenseRef-Proprietary
// The notifier of Windows, with messages that this program sends to itself from a second process:
//   tst_windowsnotifier send WINDOW EVENT BYTES
#include "USB/WindowsUSBNotifier.h"
#include "support/LogCapture.h"

#include <QGuiApplication>
#include <QtTest>

#include <windows.h>

#include <dbt.h>

using namespace USB;

// A broadcast about a device; @p size is what it says about itself, its real one unless given.
static QByteArray broadcast(const QString& name, DWORD type = DBT_DEVTYP_DEVICEINTERFACE,
                            DWORD classData = 0xA5DCBF10, int size = 0)
{
    DEV_BROADCAST_DEVICEINTERFACE_W header{};
    constexpr int nameAt = offsetof(DEV_BROADCAST_DEVICEINTERFACE_W, dbcc_name);
    header.dbcc_size = DWORD(size != 0 ? size : nameAt + 2 * (name.size() + 1));
    header.dbcc_devicetype = type;
    header.dbcc_classguid.Data1 = classData;
    return QByteArray(reinterpret_cast<const char*>(&header), nameAt) +
           QByteArray(reinterpret_cast<const char*>(name.utf16()), 2 * (name.size() + 1));
}

class tst_windowsnotifier : public QObject
{
    Q_OBJECT

private slots:
    void reportsWhatAnotherProcessSends()
    {
        const QString unit = R"(\\?\USB#VID_16D0&PID_0C07#1#{a5dcbf10})";
        const auto removal = DBT_DEVICEREMOVECOMPLETE;
        const std::tuple<int, QByteArray, QString> rows[] = {
            {DBT_DEVICEARRIVAL, broadcast(unit), "+16d0:c07"},
            {removal, broadcast(unit.toLower()), "-16d0:c07"},
            {DBT_DEVICEQUERYREMOVE, broadcast(unit), ""},
            {DBT_DEVNODES_CHANGED, "", ""},
            {removal, broadcast(unit, DBT_DEVTYP_VOLUME), ""},
            {removal, broadcast(unit, DBT_DEVTYP_DEVICEINTERFACE, 0x4D1E55B2), "-16d0:c07"},
            {DBT_DEVICEARRIVAL, broadcast(""), ""},
            {DBT_DEVICEARRIVAL, broadcast(R"(\\?\USB#VID_16D0&PID_0C)"), ""},
            {DBT_DEVICEARRIVAL, broadcast("VID_zzzz&PID_0C07"), "+0:c07"},
            {DBT_DEVICEARRIVAL, broadcast(QString(4000, QChar(0x6A5F)) + unit), "+16d0:c07"},
        };
        LogCapture log({"WindowsUSBNotifier"});
        QWindow window;
        const std::unique_ptr<I_USBNotifier> notifier(I_USBNotifier::create(nullptr, &window));
        QVERIFY(window.handle() != nullptr);
        follow(*notifier);
        for (const auto& [event, bytes, expected] : rows) {
            m_seen.clear();
            QProcess sender;
            sender.start(
                QCoreApplication::applicationFilePath(),
                {"send", QString::number(window.winId()), QString::number(event), bytes.toHex()});
            QTRY_COMPARE_WITH_TIMEOUT(sender.state(), QProcess::NotRunning, 30'000);
            QCOMPARE(sender.exitCode(), 0);
            QCOMPARE(m_seen, expected);
        }
        QCOMPARE(log.lines(), QStringList());
    }

    void readsNoFurtherThanTheMessage()
    {
        WindowsUSBNotifier notifier(nullptr, 0);
        follow(notifier);
        // All but the last digit and the NUL; all but the name.
        for (const int cut : {0, 4, 2 * 18}) {
            const QString name = "VID_16D0&PID_0C07";
            const int size = broadcast(name).size() - cut;
            QByteArray bytes = broadcast(name, DBT_DEVTYP_DEVICEINTERFACE, 0, size);
            m_seen.clear();
            MSG message{nullptr, WM_DEVICECHANGE, DBT_DEVICEARRIVAL, LPARAM(bytes.data()), 0, {}};
            QVERIFY(!notifier.nativeEventFilter("any", &message, nullptr));
            QCOMPARE(m_seen, QString(cut == 0 ? "+16d0:c07" : ""));
        }
    }

private:
    void follow(const I_USBNotifier& notifier)
    {
        const auto record = [this](const char* sign) {
            return [this, sign](quint16 vid, quint16 pid) {
                m_seen += sign + QString::number(vid, 16) + ':' + QString::number(pid, 16);
            };
        };
        connect(&notifier, &I_USBNotifier::USBAttachmentNotification, this, record("+"));
        connect(&notifier, &I_USBNotifier::USBRemovalNotification, this, record("-"));
    }

    QString m_seen;
};

int main(int argc, char** argv)
{
    if (argc == 5 && argv[1] == QByteArray("send")) {
        const QByteArray bytes = QByteArray::fromHex(argv[4]);
        const auto* data = bytes.isEmpty() ? nullptr : bytes.data();
        SetLastError(0);
        SendMessageW(HWND(QByteArray(argv[2]).toULongLong()), WM_DEVICECHANGE,
                     QByteArray(argv[3]).toUInt(), LPARAM(data));
        return int(GetLastError());
    }
    const QGuiApplication application(argc, argv);
    tst_windowsnotifier test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_windowsnotifier.moc"
