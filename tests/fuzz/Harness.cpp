#include "Harness.h"

#include <QCoreApplication>

#include <cstdio>
#include <cstdlib>

namespace {

void dropMessage(QtMsgType, const QMessageLogContext&, const QString&) {}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    // A thread of one update asks for its event dispatcher; Qt's own is made faster than GLib's.
    qputenv("QT_NO_GLIB", "1");
    // libFuzzer reads its arguments again later; Qt takes those away that it knows.
    static int count = 1;
    static char* name[] = {(*argv)[0], nullptr};
    Q_UNUSED(argc)
    static const QCoreApplication application(count, name);
    qInstallMessageHandler(&dropMessage);
    return 0;
}

namespace Fuzz {

void require(bool holds, const char* statement)
{
    if (holds)
        return;
    std::fprintf(stderr, "==FUZZ== This does not hold: %s\n", statement);
    std::abort();
}

QByteArray bytesOf(const std::uint8_t* data, std::size_t size)
{
    return QByteArray(reinterpret_cast<const char*>(data), static_cast<int>(size));
}

} // namespace Fuzz
