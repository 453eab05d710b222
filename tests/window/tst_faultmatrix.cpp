// One update, from opening the application unit to the restarted unit's card, with a fault at every
// one of its requests: what a person sees, what is signalled, how long the window stood still, and
// that the update can be brought to its end afterwards.
#include "UpdateSteps.h"
#include "UpdaterSession.h"
#include "unit/FirmwareImage.h"

#include <QTest>

#include <cstdio>

using namespace VirtualUnit;
using Action = Fault::Action;

Q_DECLARE_METATYPE(StepFault)

namespace {

// What else a loaded machine may do between two turns of the event loop.
constexpr int turnSlackMs = 700;
constexpr unsigned answerDelayMs = 150;
constexpr unsigned busyPolls = 5;

struct Result
{
    int index;
    QString request;
    QString fault;
    QString outcome;
    int longestTurn;
};

// The faults at the index-th request from now on, as the unit carries it out.
std::vector<Fault> faultsAt(int index, const Step& step, StepFault fault)
{
    const auto at = [index](Action action, unsigned value = 0) {
        return Fault::at(unsigned(index), action, value);
    };
    switch (fault) {
    case StepFault::Unplug:
        return {at(Action::NeverReturn), at(Action::LeaveBus)};
    case StepFault::Stall:
        return {at(Action::Stall)};
    case StepFault::Silence:
        return {at(Action::Silence)};
    case StepFault::ShortAnswer:
        return {at(Action::ShortAnswer, 1)};
    case StepFault::DfuError:
        return {at(Action::FailStatus, unsigned(Dfu::Status::ErrVendor))};
    case StepFault::Busy:
        break;
    }
    return {step.isDfu ? at(Action::StayBusy, busyPolls) : at(Action::Delay, answerDelayMs)};
}

// The name on the card of an application unit that met the fault at that read.
QString nameAfter(const QString& request, StepFault fault)
{
    const bool noAnswer = fault != StepFault::ShortAnswer && fault != StepFault::Busy;
    if (request == "schema" && noAnswer)
        return "";
    if (request == "config" && fault != StepFault::Busy)
        return noAnswer ? "Unknown Device" : "";
    return "W-2";
}

QStringList statesOf(const Step& step, Terminal terminal)
{
    QStringList states = {"FirmwareUpdateState", "UpdatingState", "DropToBootloaderState"};
    if (step.role != Role::Drop || terminal == Terminal::Succeeded)
        states << "TaskState";
    if (terminal == Terminal::Failed)
        return states << "ErrorDuringUpdateState";
    states << "RestartingDeviceState";
    if (terminal == Terminal::Succeeded)
        states << "UpdateFinishedState";
    return states;
}

QStringList unitSignalsOf(const Step& step, StepFault fault, const Outcome& outcome)
{
    const bool again = step.role == Role::ReadAgain;
    const QString first = again ? "W-2" : nameAfter(step.name, fault);
    const QString bootloader = "Aquen (Update)";
    QStringList expected = {"+" + first};
    QString last = first;
    if (outcome.terminal != Terminal::List &&
        outcome.text != "Error while dropping to boot loader.") {
        expected << "-" + first << "+" + bootloader << "dfu";
        last = bootloader;
    }
    // After the one answer that is lost at the very end the unit restarts all the same.
    const bool restarts = outcome.terminal == Terminal::Succeeded ||
                          (step.role == Role::Manifest && fault == StepFault::ShortAnswer);
    if (restarts) {
        last = again ? nameAfter(step.name, fault) : "W-2";
        expected << "-" + bootloader << "+" + last;
    }
    if (fault == StepFault::Unplug)
        expected << "-" + last;
    return expected;
}

QStringList taskSignalsOf(const Outcome& outcome)
{
    QStringList expected = QStringList({"progress 0", "progress 0.4096", "progress 0.8192"})
                               .mid(0, outcome.progressReports);
    if (outcome.terminal != Terminal::Failed)
        expected << "finished";
    for (const QString& error : outcome.errors)
        expected << "error " + error;
    return expected;
}

} // namespace

class tst_faultmatrix : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void unplug_data() { addSteps(StepFault::Unplug); }
    void unplug() { faultAtStep("unplug"); }
    void stall_data() { addSteps(StepFault::Stall); }
    void stall() { faultAtStep("STALL"); }
    void silence_data() { addSteps(StepFault::Silence); }
    void silence() { faultAtStep("silence"); }
    void shortAnswer_data() { addSteps(StepFault::ShortAnswer); }
    void shortAnswer() { faultAtStep("short answer"); }
    void dfuError_data() { addSteps(StepFault::DfuError); }
    void dfuError() { faultAtStep("DFU error"); }
    void busy_data() { addSteps(StepFault::Busy); }
    void busy() { faultAtStep("busy"); }

private:
    void addSteps(StepFault fault);
    void faultAtStep(const char* faultName);
    void run(int index, const Step& step, StepFault fault, const Outcome& expected);
    void reachTheEnd(StepFault fault, const Outcome& expected);
    void checkSignals(const Step& step, StepFault fault, const Outcome& expected);
    void bringToTheEnd(const Step& step, const Outcome& expected);
    void replug();
    void finishFromList();
    void leaveEmptyBus();

    std::unique_ptr<BusFixture> m_bus;
    std::unique_ptr<UpdaterSession> m_session;
    QVector<Step> m_steps;
    P_Unit m_unit;
    QByteArray m_image;
    QVector<Result> m_results;
    QString m_outcome; ///< of the row so far
    int m_faultTurn = 0;
};

#define CARRY_ON_UNLESS_FAILED                                                                     \
    if (QTest::currentTestFailed())                                                                \
    return

void tst_faultmatrix::initTestCase()
{
    qInstallMessageHandler(&withoutSizeHints);
    m_bus = std::make_unique<BusFixture>();
    m_image = toByteArray(makeImage(5000, "1.3.1"));
    QVERIFY(shipFirmware(m_image, toByteArray(makeImage(5000, "1.3.1", 2))));
    const SessionTimes times = SessionTimes::quick();
    m_steps = updateSteps(int(times.statusTimeout.count()));
    m_session = std::make_unique<UpdaterSession>(times);
    QVERIFY(m_session->isRunning());
    m_unit = m_bus->plugApplication("W-2", "1.2.0");
    m_unit->adjust([](Overrides& overrides) { overrides.returnDelay = milliseconds(120); });

    // Without a fault: the requests are those that the table is about.
    QVERIFY(m_session->wait([&] { return m_session->offers("Update Firmware", true); }));
    QVERIFY(m_session->press("updateButton"));
    QVERIFY(m_session->wait([&] { return m_session->isDone(); }));
    QCOMPARE(m_session->barText(), QStringLiteral("Update successful!"));
    QStringList names;
    for (const TraceEntry& entry : m_unit->trace())
        names << QString::fromStdString(entry.name);
    QStringList expected;
    for (const Step& step : qAsConst(m_steps))
        expected << step.name;
    QCOMPARE(names, expected);
    QVERIFY(m_session->press("doneButton"));
    leaveEmptyBus();
}

void tst_faultmatrix::cleanupTestCase()
{
    m_session.reset();
    std::printf("\n%5s  %-12s %-12s %-58s %s\n", "index", "request", "fault", "outcome",
                "longest turn/ms");
    for (const Result& result : qAsConst(m_results))
        std::printf("%5d  %-12s %-12s %-58s %5d\n", result.index, qPrintable(result.request),
                    qPrintable(result.fault), qPrintable(result.outcome), result.longestTurn);
    std::printf("%d requests; %d combinations of request and fault\n\n", int(m_steps.size()),
                int(m_results.size()));
}

void tst_faultmatrix::addSteps(StepFault fault)
{
    QTest::addColumn<int>("index");
    QTest::addColumn<StepFault>("fault");
    for (int index = 1; index <= m_steps.size(); ++index) {
        const QString tag = QStringLiteral("%1 %2").arg(index, 2).arg(m_steps.at(index - 1).name);
        QTest::newRow(qPrintable(tag)) << index << fault;
    }
}

void tst_faultmatrix::faultAtStep(const char* faultName)
{
    QFETCH(int, index);
    QFETCH(StepFault, fault);
    const Step& step = m_steps.at(index - 1);
    const QString none = noFaultBecause(step, fault);
    m_outcome = "no fault: " + none;
    m_faultTurn = 0;
    if (none.isEmpty()) {
        m_outcome = "FAILED";
        run(index, step, fault, expectedOutcome(step, fault));
    }
    m_results.append({index, step.name, faultName, m_outcome, m_faultTurn});
    if (!QTest::currentTestFailed())
        return;
    // The next row starts afresh.
    m_session.reset();
    m_unit->clearFaults();
    m_bus->bus().waitUntilSettled(milliseconds(5000));
    m_bus->bus().unplug(m_unit);
    m_unit->adjust([](Overrides& overrides) { overrides.returns = true; });
    m_bus->awaitGone(0);
    m_session = std::make_unique<UpdaterSession>(SessionTimes::quick());
}

void tst_faultmatrix::run(int index, const Step& step, StepFault fault, const Outcome& expected)
{
    m_unit->clearTrace();
    m_unit->loadImage(makeImage(16384, "1.2.0"));
    for (const Fault& part : faultsAt(index, step, fault))
        m_unit->addFault(part);
    m_bus->bus().plug(m_unit);
    m_session->forget();
    reachTheEnd(fault, expected);
    CARRY_ON_UNLESS_FAILED;
    const std::vector<TraceEntry> trace = m_unit->trace();
    QVERIFY(trace.size() >= std::size_t(index));
    QCOMPARE(QString::fromStdString(trace.at(std::size_t(index) - 1).name), step.name);
    checkSignals(step, fault, expected);
    CARRY_ON_UNLESS_FAILED;
    m_faultTurn = m_session->longestTurn();
    const int wait = fault == StepFault::Silence ? step.guiTimeoutMs : int(answerDelayMs);
    QVERIFY2(m_faultTurn <= wait + turnSlackMs, qPrintable(QString::number(m_faultTurn)));
    m_unit->clearFaults();
    m_unit->adjust([](Overrides& overrides) { overrides.returns = true; });
    bringToTheEnd(step, expected);
}

void tst_faultmatrix::reachTheEnd(StepFault fault, const Outcome& expected)
{
    QVERIFY(m_session->wait([&] { return !m_session->unitSignals().isEmpty(); }));
    if (expected.terminal == Terminal::List) {
        m_outcome = "in the list as \"" + expected.text + "\", not to be updated";
        if (fault == StepFault::Unplug)
            m_outcome = "leaves the list";
        else
            QVERIFY(m_session->wait([&] {
                return m_session->offers("Update Firmware", false) &&
                       m_session->shows(expected.text);
            }));
        return;
    }
    QVERIFY(m_session->wait([&] { return m_session->offers("Update Firmware", true); }));
    QVERIFY(m_session->press("updateButton"));
    const bool waits = expected.terminal == Terminal::Restarting;
    QVERIFY(m_session->wait(
        [&] { return m_session->isDone() || (waits && m_session->barText() == expected.text); }));
    QCOMPARE(m_session->barText(), expected.text);
    m_outcome = expected.text;
    if (waits) {
        // Without end; the window lives, and its button stays off.
        QVERIFY(!m_session->wait([&] { return m_session->isDone(); }, 300));
        m_outcome = "still waiting: " + expected.text;
    }
}

void tst_faultmatrix::checkSignals(const Step& step, StepFault fault, const Outcome& expected)
{
    const QStringList unitSignals = unitSignalsOf(step, fault, expected);
    const QStringList taskSignals = taskSignalsOf(expected);
    m_session->wait([&] {
        return m_session->unitSignals().size() >= unitSignals.size() &&
               m_session->taskSignals().size() >= taskSignals.size();
    });
    QCOMPARE(m_session->unitSignals(), unitSignals);
    if (expected.terminal == Terminal::List) {
        QCOMPARE(m_session->states(), QStringList());
        return;
    }
    QCOMPARE(m_session->taskSignals(), taskSignals);
    QCOMPARE(m_session->states(), statesOf(step, expected.terminal));
}

void tst_faultmatrix::replug()
{
    m_bus->bus().unplug(m_unit);
    QVERIFY(m_session->wait([&] { return m_session->unitsPresent() == 0; }));
    m_bus->bus().plug(m_unit);
    QVERIFY(m_session->wait([&] { return m_session->unitsPresent() == 1; }));
}

void tst_faultmatrix::bringToTheEnd(const Step& step, const Outcome& expected)
{
    if (expected.terminal == Terminal::Restarting) {
        replug();
        QVERIFY(m_session->wait([&] { return m_session->isDone(); }));
        QCOMPARE(m_session->barText(), QStringLiteral("Update successful!"));
        m_outcome += " Plugged in again: Update successful!";
    }
    if (expected.terminal != Terminal::List)
        QVERIFY(m_session->press("doneButton"));
    const bool succeeded = expected.terminal == Terminal::Succeeded && step.role != Role::ReadAgain;
    if (expected.terminal != Terminal::Restarting && !succeeded) {
        replug();
        CARRY_ON_UNLESS_FAILED;
        finishFromList();
    }
    CARRY_ON_UNLESS_FAILED;
    QVERIFY(m_unit->mode() == Mode::Application);
    QCOMPARE(toByteArray(m_unit->applicationContent()), m_image);
    QVERIFY(m_session->wait([&] { return m_session->offers("Update Firmware", false); }));
    leaveEmptyBus();
}

// From the list with the unit as it came back, by the button that stands there.
void tst_faultmatrix::finishFromList()
{
    const bool isNew = m_unit->firmwareVersion() == "1.3.1";
    const QString button = m_unit->mode() == Mode::Bootloader ? "Resume Update" : "Update Firmware";
    QVERIFY(m_session->wait([&] { return m_session->offers(button, !isNew); }));
    m_outcome += isNew ? "; then up to date" : "; then " + button;
    if (isNew)
        return;
    QVERIFY(m_session->press("updateButton"));
    QVERIFY(m_session->wait([&] { return m_session->isDone(); }));
    QCOMPARE(m_session->barText(), QStringLiteral("Update successful!"));
    QVERIFY(m_session->press("doneButton"));
}

void tst_faultmatrix::leaveEmptyBus()
{
    m_bus->bus().unplug(m_unit);
    QVERIFY(m_session->wait([&] {
        return m_session->unitsPresent() == 0 && m_session->visible("updateButton").isEmpty();
    }));
}

QTEST_MAIN(tst_faultmatrix)
#include "tst_faultmatrix.moc"
