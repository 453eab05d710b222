// SPDX-License-Identifier: LicenseRef-Proprietary
// The update task as the user interface drives it, with bundles in this program's own resource
// folder and a virtual unit on the bus.
#include "Common/Paths.h"
#include "firmware/FirmwareBundle.h"
#include "support/BusFixture.h"
#include "support/LogCapture.h"
#include "support/TempFiles.h"
#include "unit/FirmwareImage.h"
#include "update/AquenSolvarTaskFactory.h"
#include "update/DetachedJob.h"

#include <QDir>
#include <QSignalSpy>
#include <QTest>
#include <QTranslator>

using namespace AquenSolvar;
using namespace VirtualUnit;
using Task = Tasks::AquenSolvarFirmwareUpdateTask;

namespace {

// Marks each translated text.
class Brackets : public QTranslator
{
public:
    bool isEmpty() const override { return false; }
    QString translate(const char* /*context*/, const char* source, const char*, int) const override
    {
        return QStringLiteral("<%1>").arg(source);
    }
};

} // namespace

class tst_updatetask : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { m_bus = std::make_unique<BusFixture>(); }
    void init() { m_unit = m_bus->plugBootloader(); }
    void cleanup();
    void update();
    void nothingToUpdate();
    void failure();
    void sizeAndStop();
    void taskGoesWhileFlashing();
    void programEndsWhileFlashing();

private:
    std::unique_ptr<Task> makeTask();
    void putBundle(const QString& name, qint32 version, const QByteArray& image);
    bool updates(Task& task);

    std::unique_ptr<BusFixture> m_bus;
    QDir m_firmwares{Common::Paths::resourceDirectory() + "/Firmwares"};
    P_Unit m_unit;
    const QByteArray m_image = toByteArray(makeImage(5000, "1.3.1"));
};

void tst_updatetask::cleanup()
{
    m_bus->unplugAll();
    QVERIFY(m_bus->awaitGone(0));
    m_firmwares.removeRecursively();
}

std::unique_ptr<Task> tst_updatetask::makeTask()
{
    Device::AquenSolvarDfuDevice bootloader(m_bus->awaitRecord(0x0C05));
    AquenSolvarTaskFactory factory;
    factory.setTimes({std::chrono::milliseconds(1)});
    return std::unique_ptr<Task>(factory.makeFirmwareUploadTask(&bootloader));
}

void tst_updatetask::putBundle(const QString& name, qint32 version, const QByteArray& image)
{
    TempFiles().put(m_firmwares.filePath(name), Device::packFirmwareBundle(version, image));
}

// True if the unit then runs the image: it starts a valid one only.
bool tst_updatetask::updates(Task& task)
{
    QSignalSpy finished(&task, &Task::uploadFinsihed);
    return task.uploadFirmware() && finished.wait(20000) &&
           waitFor([&] { return m_unit->mode() == Mode::Application; });
}

void tst_updatetask::update()
{
    putBundle("aquen-v12.tarnware", 12, m_image);
    putBundle("solvar-v99.tarnware", 99, QByteArray(100, 'x'));
    const auto task = makeTask();
    QSignalSpy progress(task.get(), &Task::progressChanged);
    const LogCapture log({"AquenSolvarFirmwareUpdateTask"});
    QVERIFY(updates(*task));
    QVERIFY(log.contains("INFO", "with bundle version 12 , 5000 bytes"));
    QVERIFY(log.contains("INFO", "Progress:  81.92"));
    QVERIFY(log.contains("INFO", "DFU download finished!"));
    QCOMPARE(task->progress(), 0.8192f);
    task->resetProgress();
    QCOMPARE(task->progress(), 0.0f);
    QCOMPARE(progress.count(), 4);
}

void tst_updatetask::nothingToUpdate()
{
    const LogCapture log({"AquenSolvarFirmwareUpdateTask"});
    const std::unique_ptr<Task> withoutUnit(AquenSolvarTaskFactory().makeFirmwareUploadTask({}));
    QVERIFY(!withoutUnit->uploadFirmware());
    withoutUnit->stopUpdate();
    QVERIFY(log.contains("ERROR", "Failed to set up USB device..."));

    putBundle("solvar-v9.tarnware", 9, QByteArray(100, 'x'));
    const auto withoutFirmware = makeTask();
    QVERIFY(!withoutFirmware->uploadFirmware());
    QVERIFY(log.contains("ERROR", "No firmware update to apply"));

    putBundle("aquen-v9.tarnware", 9, m_image);
    m_unit->addFault(Fault::on("string", Fault::Action::Stall));
    const auto withoutLayout = makeTask();
    QVERIFY(!withoutLayout->uploadFirmware());
    // Neither of the tasks keeps the unit from the next attempt.
    QVERIFY(updates(*makeTask()));
}

void tst_updatetask::failure()
{
    Brackets brackets;
    QCoreApplication::installTranslator(&brackets);
    putBundle("aquen-v9.tarnware", 9, m_image);
    const auto task = makeTask();
    QSignalSpy errors(task.get(), &Task::uploadError);
    const LogCapture log({"AquenSolvarFirmwareUpdateTask"});
    m_unit->addFault(Fault::on("write", Fault::Action::FailStatus, 6));
    QVERIFY(task->uploadFirmware());
    QVERIFY(waitFor([&] { return log.contains("INFO", "ended after"); }));
    QCoreApplication::removeTranslator(&brackets);
    QCOMPARE(errors.value(0), QVariantList({"<Error state while flashing firmware.>"}));
    QCOMPARE(errors.value(1), QVariantList({"<Caught USB exception: <Error state while downloading "
                                            "to Aquen/Solvar in \"DFU\" mode.>>"}));
    QCOMPARE(log.count("ERROR"), 2);
    QVERIFY(!log.lines().join('|').contains('<')); // the log stays English
    // The failed task still exists, but the unit is free.
    QVERIFY(updates(*makeTask()));
}

void tst_updatetask::sizeAndStop()
{
    putBundle("aquen-v9.tarnware", 9, QByteArray(163840, 'x'));
    const auto task = makeTask();
    QSignalSpy errors(task.get(), &Task::uploadError);
    QSignalSpy progress(task.get(), &Task::progressChanged);
    QSignalSpy finished(task.get(), &Task::uploadFinsihed);
    LogCapture log({"AquenSolvarFirmwareUpdateTask"});
    QVERIFY(task->uploadFirmware());
    QVERIFY(waitFor([&] { return log.contains("INFO", "ended after"); }));
    QCOMPARE(errors.value(0), QVariantList({"Too much data to complete upload."}));
    log.clear();
    putBundle("aquen-v9.tarnware", 9, QByteArray(163839, 'x'));
    QVERIFY(task->uploadFirmware());
    QVERIFY(progress.wait());
    task->stopUpdate();
    QVERIFY(waitFor([&] { return log.contains("INFO", "ended after"); }));
    QCOMPARE(finished.count(), 0);
}

void tst_updatetask::taskGoesWhileFlashing()
{
    putBundle("aquen-v9.tarnware", 9, toByteArray(makeImage(30000, "1.3.1")));
    auto task = makeTask();
    QSignalSpy progress(task.get(), &Task::progressChanged);
    QVERIFY(task->uploadFirmware());
    QVERIFY(progress.wait());
    task.reset();
    QVERIFY(waitFor([&] { return m_unit->mode() == Mode::Application; }));
    QVERIFY(waitFor([&] {
        return QCoreApplication::instance()->findChildren<Device::DetachedJob*>().isEmpty();
    }));
}

void tst_updatetask::programEndsWhileFlashing()
{
    putBundle("aquen-v9.tarnware", 9, m_image);
    m_unit->addFault(Fault::on("getstatus", Fault::Action::Silence, 0, 3));
    auto task = makeTask();
    QVERIFY(task->uploadFirmware());
    QVERIFY(waitFor([&] { return m_unit->trace().back().outcome == Response::Kind::Silence; }));
    task.reset();
    const LogCapture log({"DFUDownloadJob"});
    Device::DetachedJob::endAll(); // cancels the status read, whose time-out is 100 s
    QVERIFY(log.contains("ERROR", "timed out while closing"));
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(updates(*makeTask()));
}

QTEST_GUILESS_MAIN(tst_updatetask)
#include "tst_updatetask.moc"
