#include "DownloadJobFixture.h"

#include "update/DetachedJob.h"

#include <QTest>

using namespace AquenSolvar::Device;
using namespace VirtualUnit;

const QString DownloadJobFixture::wrappedError = QStringLiteral(
    "Caught USB exception: Error state while downloading to Aquen/Solvar in \"DFU\" mode.");

JobRecorder::JobRecorder(DFUDownloadJob& job)
{
    connect(&job, &DFUDownloadJob::uploadError, this, [this](QString text) { errors << text; });
    connect(&job, &DFUDownloadJob::uploadProgress, this, [this](float p) { progress << p; });
    connect(&job, &DFUDownloadJob::uploadFinished, this, [this] { ++finished; });
    connect(&job, &QThread::finished, this, [this] { ended = true; });
}

void DownloadJobFixture::initTestCase()
{
    m_bus = std::make_unique<BusFixture>();
}

void DownloadJobFixture::cleanup()
{
    m_bus->unplugAll();
    QVERIFY(m_bus->awaitGone(0));
}

QSharedPointer<DfuDevice> DownloadJobFixture::open(const P_Unit& unit, DfuTimes times)
{
    // An earlier device of the test lets go of the unit when its deferred deletion runs.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    const USB::P_LibUsbDevice record = m_bus->awaitRecord(unit->productId());
    QSharedPointer<DfuDevice> device(new DfuDevice(record, times), &QObject::deleteLater);
    device->init();
    device->setAlternateSetting(0);
    unit->clearTrace();
    return device;
}

QSharedPointer<DFUDownloadJob> DownloadJobFixture::makeJob(const QByteArray& image,
                                                           const QSharedPointer<DfuDevice>& device)
{
    return QSharedPointer<DFUDownloadJob>(new DFUDownloadJob(image, device, maxSize),
                                          &DetachedJob::release);
}
