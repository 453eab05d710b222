// SPDX-License-Identifier: LicenseRef-Proprietary
#include "update/DetachedJob.h"

#include "qslog/Log.h"

#include <QCoreApplication>

namespace AquenSolvar::Device {

void DetachedJob::release(DFUDownloadJob* job)
{
    if (!job->isRunning()) {
        delete job;
        return;
    }
    QLOG_WARN() << "A firmware download goes on without the task that started it.";
    auto* detached = new DetachedJob(job, QCoreApplication::instance());
    if (detached->parent() == nullptr)
        delete detached; // the application object is gone: the program ends
}

void DetachedJob::endAll()
{
    qDeleteAll(QCoreApplication::instance()->findChildren<DetachedJob*>(
        QString(), Qt::FindDirectChildrenOnly));
}

DetachedJob::DetachedJob(DFUDownloadJob* job, QObject* parent)
    : QObject(parent)
    , m_job(job)
{
    connect(m_job, &QThread::finished, this, &QObject::deleteLater, Qt::QueuedConnection);
    if (m_job->isFinished())
        deleteLater();
}

DetachedJob::~DetachedJob()
{
    m_job->stop();
    if (m_job->isRunning())
        QLOG_ERROR() << "A firmware download could not be ended.";
    else
        delete m_job;
}

} // namespace AquenSolvar::Device
