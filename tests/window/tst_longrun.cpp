// Update after update in one process: what it holds at the end must be what it held after the
// tenth. The suite runs a few; the whole run is the script long-run's.
#include "UpdaterSession.h"
#include "unit/FirmwareImage.h"

#include <QDir>
#include <QFile>
#include <QQmlApplicationEngine>
#include <QRegularExpression>
#include <QTest>

#include <cstdio>
#include <malloc.h>

using namespace VirtualUnit;

namespace {

// Of the whole process, the virtual bus and the units included.
struct Figures
{
    int residentKiB = 0;
    int heapKiB = 0; ///< in use
    int descriptors = 0;
    int threads = 0;
};

int entries(const char* directory)
{
    return QDir(directory).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot).size();
}

Figures measure()
{
    QFile status("/proc/self/status");
    Figures figures;
    if (status.open(QIODevice::ReadOnly)) {
        const QRegularExpression line("VmRSS:\\s+(\\d+) kB");
        figures.residentKiB = line.match(QString::fromLatin1(status.readAll())).captured(1).toInt();
    }
    const auto heap = mallinfo2();
    figures.heapKiB = int((heap.uordblks + heap.hblkhd) / 1024);
    figures.descriptors = entries("/proc/self/fd");
    figures.threads = entries("/proc/self/task");
    return figures;
}

void print(int update, const Figures& figures)
{
    std::printf("after %4d updates: %7d KiB resident, %6d KiB of heap, %3d descriptors, %2d "
                "threads\n",
                update, figures.residentKiB, figures.heapKiB, figures.descriptors, figures.threads);
    std::fflush(stdout);
}

} // namespace

class tst_longrun : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init() { m_session.reset(); }
    void updates();
    void updatesInRealTime();
    void silenceInRealTime();

private:
    void updateTimes(int count, const SessionTimes& times);
    void updateOnce();

    std::unique_ptr<BusFixture> m_bus;
    std::unique_ptr<UpdaterSession> m_session;
    P_Unit m_unit;
    QByteArray m_image;
};

void tst_longrun::initTestCase()
{
    qInstallMessageHandler(&withoutSizeHints);
    m_bus = std::make_unique<BusFixture>();
    m_image = toByteArray(makeImage(5000, "1.3.1"));
    QVERIFY(shipFirmware(m_image, toByteArray(makeImage(5000, "1.3.1", 2))));
    m_unit = m_bus->plugApplication("W-2", "1.2.0");
    m_unit->adjust([](Overrides& overrides) { overrides.returnDelay = milliseconds(120); });
    m_bus->bus().unplug(m_unit);
}

void tst_longrun::updateOnce()
{
    constexpr int patience = 60000;
    m_session->forget();
    m_unit->clearTrace();
    m_unit->loadImage(makeImage(16384, "1.2.0"));
    m_bus->bus().plug(m_unit);
    QVERIFY(m_session->wait([&] { return m_session->offers("Update Firmware", true); }, patience));
    QVERIFY(m_session->press("updateButton"));
    QVERIFY(m_session->wait([&] { return m_session->isDone(); }, patience));
    QCOMPARE(m_session->barText(), QStringLiteral("Update successful!"));
    QCOMPARE(toByteArray(m_unit->applicationContent()), m_image);
    QVERIFY(m_session->press("doneButton"));
    m_bus->bus().unplug(m_unit);
    QVERIFY(m_session->wait([&] { return m_session->unitsPresent() == 0; }, patience));
}

void tst_longrun::updateTimes(int count, const SessionTimes& times)
{
    m_session = std::make_unique<UpdaterSession>(times);
    QVERIFY(m_session->isRunning());
    Figures tenth;
    Figures last;
    for (int update = 1; update <= count; ++update) {
        updateOnce();
        if (QTest::currentTestFailed())
            return;
        if (update != 10 && update != count && update % 100 != 0)
            continue;
        m_session->engine()->collectGarbage();
        m_session->wait([] { return false; }, 50);
        last = measure();
        print(update, last);
        if (update == 10)
            tenth = last;
    }
    QCOMPARE(last.descriptors, tenth.descriptors);
    QVERIFY(last.threads <= tenth.threads);
    // The heap figure is that of the main arena alone, the resident one of all.
    const int heap = last.heapKiB - tenth.heapKiB;
    const int resident = last.residentKiB - tenth.residentKiB;
    QVERIFY2(heap < 512 && resident < 4096,
             qPrintable(QStringLiteral("%1 %2").arg(heap).arg(resident)));
}

void tst_longrun::updates()
{
    const int count = qMax(20, qEnvironmentVariableIntValue("ASU_UPDATES"));
    updateTimes(count, SessionTimes::quick());
}

void tst_longrun::updatesInRealTime()
{
    updateTimes(50, SessionTimes::real());
}

// A status read is given 100 s. The window lives meanwhile, and then tells.
void tst_longrun::silenceInRealTime()
{
    m_session = std::make_unique<UpdaterSession>(SessionTimes::real());
    m_unit->loadImage(makeImage(16384, "1.2.0"));
    m_unit->addFault(Fault::on("getstatus", Fault::Action::Silence, 0, 10));
    m_bus->bus().plug(m_unit);
    QVERIFY(m_session->wait([&] { return m_session->offers("Update Firmware", true); }));
    QVERIFY(m_session->press("updateButton"));
    QVERIFY(m_session->wait([&] { return m_unit->trace().size() >= 20; }));
    QElapsedTimer time;
    time.start();
    QVERIFY(m_session->wait([&] { return m_session->isDone(); }, 120000));
    std::printf("told after %lld ms, longest turn %d ms\n", static_cast<long long>(time.elapsed()),
                m_session->longestTurn());
    QVERIFY(time.elapsed() > 90000);
    QVERIFY(m_session->longestTurn() < 1000);
}

QTEST_MAIN(tst_longrun)
#include "tst_longrun.moc"
