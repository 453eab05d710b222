// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include "update/DFUDownloadJob.h"

#include <QObject>

namespace AquenSolvar::Device {

/// Owns a download job that runs but has no other owner any more, and deletes it when its thread
/// has ended. A child of the application object, whose destruction stops the job. GUI thread.
class DetachedJob : public QObject
{
    Q_OBJECT

public:
    /// Deletes a job, as the deleter of shared pointers. A running job continues, with all that it
    /// uses kept alive, and is deleted when it has ended.
    static void release(DFUDownloadJob* job);

    /// Stops and deletes all detached jobs. To be called before the program ends, while deferred
    /// deletions are still carried out. Blocks as long as DFUDownloadJob::stop() for each job.
    static void endAll();

    ~DetachedJob() override;

private:
    DetachedJob(DFUDownloadJob* job, QObject* parent);

    DFUDownloadJob* m_job; // owned; leaked when its thread does not end
};

} // namespace AquenSolvar::Device
