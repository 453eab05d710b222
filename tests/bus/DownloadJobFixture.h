#pragma once

#include "support/BusFixture.h"
#include "update/DFUDownloadJob.h"

#include <QSharedPointer>
#include <QStringList>
#include <QVector>

#include <memory>

/// What a job said, received on the test's thread.
struct JobRecorder : QObject
{
    explicit JobRecorder(AquenSolvar::Device::DFUDownloadJob& job);

    QStringList errors;
    QVector<float> progress;
    int finished = 0;
    bool ended = false; ///< the job's thread
};

/// Download jobs for bootloaders on a virtual bus: the base of their tests.
class DownloadJobFixture : public QObject
{
    Q_OBJECT

protected:
    static constexpr int maxSize = 0x28000;
    /// What the job adds to a bad state.
    static const QString wrappedError;

    /// The unit opened and set up, polled without pauses, its trace empty.
    QSharedPointer<AquenSolvar::Device::DfuDevice> open(const VirtualUnit::P_Unit& unit,
                                                        AquenSolvar::Device::DfuTimes times = {
                                                            std::chrono::milliseconds(1)});

    static QSharedPointer<AquenSolvar::Device::DFUDownloadJob>
    makeJob(const QByteArray& image, const QSharedPointer<AquenSolvar::Device::DfuDevice>& device);

    std::unique_ptr<BusFixture> m_bus;

private slots:
    void initTestCase();
    void cleanup();
};
