#pragma once

#include "update/DFUDownloadJob.h"

#include <QObject>

namespace AquenSolvar::Device {

/// Keeps a download job alive that nobody refers to any more and deletes it when its thread has
/// ended. A child of the application object, whose end stops the job. GUI thread.
class DetachedJob : public QObject
{
    Q_OBJECT

public:
    /// Takes over a running job.
    static void adopt(DFUDownloadJob* job);

    /// Stops and deletes all jobs that are kept, for the program's end: what they release is then
    /// still deleted by the event loop's rules. Takes as long as DFUDownloadJob::stop() does for
    /// each.
    static void endAll();

    ~DetachedJob() override;

private:
    DetachedJob(DFUDownloadJob* job, QObject* parent);

    DFUDownloadJob* m_job; // owned; left alone when it cannot be ended
};

} // namespace AquenSolvar::Device
