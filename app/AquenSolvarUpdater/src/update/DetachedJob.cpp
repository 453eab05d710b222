#include "update/DetachedJob.h"

#include "qslog/Log.h"

#include <QCoreApplication>

namespace AquenSolvar::Device {

void DetachedJob::adopt(DFUDownloadJob* job)
{
    QLOG_WARN() << "A firmware download goes on without the task that started it.";
    auto* keeper = new DetachedJob(job, QCoreApplication::instance());
    if (keeper->parent() == nullptr)
        delete keeper; // the program is at its end
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
