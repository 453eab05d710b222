// SPDX-License-Identifier: LicenseRef-Proprietary
#include "qslog/LogFile.h"

#include <QDir>

#include <fcntl.h>
#include <io.h>
#include <windows.h>

namespace QsLogging {

bool openLogFile(QFile& file)
{
    // QFile itself does not share deletion, without which Windows refuses to rename an open file.
    const QString path = QDir::toNativeSeparators(file.fileName());
    const HANDLE handle = CreateFileW(reinterpret_cast<LPCWSTR>(path.utf16()), FILE_APPEND_DATA,
                                      FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                      nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (handle == INVALID_HANDLE_VALUE)
        return false;
    const int descriptor = _open_osfhandle(reinterpret_cast<intptr_t>(handle), _O_APPEND);
    if (descriptor < 0) {
        CloseHandle(handle);
        return false;
    }
    if (file.open(descriptor, QIODevice::WriteOnly | QIODevice::Append | QIODevice::Text,
                  QFileDevice::AutoCloseHandle))
        return true;
    _close(descriptor);
    return false;
}

} // namespace QsLogging
