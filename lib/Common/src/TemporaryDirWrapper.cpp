// SPDX-License-Identifier: LicenseRef-Proprietary
#include "Common/TemporaryDirWrapper.h"

#include "qslog/Log.h"

namespace Common::File {

TemporaryDirWrapper::TemporaryDirWrapper(QObject* parent)
    : QObject(parent)
{
    if (!m_directory.isValid())
        QLOG_WARN() << "Could not make a temporary directory:" << m_directory.errorString();
}

bool TemporaryDirWrapper::autoRemove() const
{
    return m_directory.autoRemove();
}

void TemporaryDirWrapper::setAutoRemove(bool autoRemove)
{
    m_directory.setAutoRemove(autoRemove);
    emit autoRemoveChanged();
}

QString TemporaryDirWrapper::path() const
{
    return m_directory.path();
}

} // namespace Common::File
