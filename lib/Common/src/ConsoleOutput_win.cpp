// SPDX-License-Identifier: LicenseRef-Proprietary
#include "Common/ConsoleOutput.h"

#include <QTextCodec>

#include <cstdio>
#include <fcntl.h>
#include <io.h>
#include <utility>
#include <vector>
#include <windows.h>

namespace Common {

namespace {

// The system's handle of a stream; an invalid one if the stream leads nowhere.
HANDLE handleOf(FILE* stream)
{
    const int descriptor = _fileno(stream);
    if (descriptor < 0)
        return INVALID_HANDLE_VALUE;
    const auto handle = reinterpret_cast<HANDLE>(_get_osfhandle(descriptor));
    return GetFileType(handle) == FILE_TYPE_UNKNOWN ? INVALID_HANDLE_VALUE : handle;
}

// A stream in text mode takes each byte for a character of its own, and without a buffer writes
// each one by itself: both take characters of UTF-8 apart. A console needs no carriage returns.
void keepBytesTogether(FILE* stream)
{
    _setmode(_fileno(stream), _O_BINARY);
    std::setvbuf(stream, nullptr, _IOFBF, BUFSIZ);
}

} // namespace

struct ConsoleOutput::Restored
{
    QTextCodec* codec = QTextCodec::codecForLocale();
    UINT codePage = 0; // 0 if no stream is a console
    std::vector<std::pair<HANDLE, DWORD>> modes;
};

ConsoleOutput::ConsoleOutput()
    : m_restored(std::make_unique<Restored>())
{
    std::vector<FILE*> unconnected;
    for (FILE* stream : {stdout, stderr}) {
        if (handleOf(stream) == INVALID_HANDLE_VALUE)
            unconnected.push_back(stream);
    }
    if (!unconnected.empty() && AttachConsole(ATTACH_PARENT_PROCESS)) {
        // Where that fails, what is printed has no reader. The mode of a console can only be asked
        // for where it may also be read.
        for (FILE* stream : unconnected)
            static_cast<void>(std::freopen("CONOUT$", "w+", stream));
    }
    for (FILE* stream : {stdout, stderr}) {
        const HANDLE handle = handleOf(stream);
        DWORD mode = 0;
        if (handle == INVALID_HANDLE_VALUE || !GetConsoleMode(handle, &mode))
            continue;
        m_restored->codePage = GetConsoleOutputCP();
        m_restored->modes.emplace_back(handle, mode);
        SetConsoleMode(handle, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING);
        keepBytesTogether(stream);
    }
    if (m_restored->codePage != 0)
        SetConsoleOutputCP(CP_UTF8);
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
}

ConsoleOutput::~ConsoleOutput()
{
    std::fflush(stdout);
    std::fflush(stderr);
    // The last mode first: both streams may lead to the same console.
    for (auto mode = m_restored->modes.rbegin(); mode != m_restored->modes.rend(); ++mode)
        SetConsoleMode(mode->first, mode->second);
    if (m_restored->codePage != 0)
        SetConsoleOutputCP(m_restored->codePage);
    QTextCodec::setCodecForLocale(m_restored->codec);
}

} // namespace Common
