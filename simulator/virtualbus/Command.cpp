// SPDX-License-Identifier: LicenseRef-Proprietary
#include "virtualbus/Command.h"

#include <QEventLoop>
#include <QFile>
#include <QProcess>
#include <QSocketNotifier>

#include <csignal>
#include <stdexcept>
#include <sys/prctl.h>
#include <sys/signalfd.h>

namespace VirtualUnit {

namespace {

sigset_t endSignals()
{
    sigset_t set;
    sigemptyset(&set);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT})
        sigaddset(&set, signal);
    return set;
}

class Child : public QProcess
{
protected:
    void setupChildProcess() override
    {
        const sigset_t set = endSignals();
        pthread_sigmask(SIG_UNBLOCK, &set, nullptr);
        prctl(PR_SET_PDEATHSIG, SIGKILL);
    }
};

void passOn(QFile& signalFile, qint64 process)
{
    signalfd_siginfo info{};
    while (signalFile.read(reinterpret_cast<char*>(&info), sizeof info) == sizeof info) {
        // The terminal sends its signals to the whole process group: the command has them already.
        if (info.ssi_code != SI_KERNEL)
            kill(static_cast<pid_t>(process), static_cast<int>(info.ssi_signo));
    }
}

} // namespace

void blockSignals()
{
    const sigset_t set = endSignals();
    pthread_sigmask(SIG_BLOCK, &set, nullptr);
}

int runCommand(const QStringList& command)
{
    const sigset_t set = endSignals();
    QFile signalFile;
    if (!signalFile.open(signalfd(-1, &set, SFD_CLOEXEC | SFD_NONBLOCK),
                         QIODevice::ReadOnly | QIODevice::Unbuffered, QFile::AutoCloseHandle))
        throw std::runtime_error("cannot watch signals");
    Child child;
    QEventLoop loop;
    const QSocketNotifier notifier(signalFile.handle(), QSocketNotifier::Read);
    QObject::connect(&notifier, &QSocketNotifier::activated, &child,
                     [&] { passOn(signalFile, child.processId()); });
    QObject::connect(&child, &QProcess::stateChanged, &loop, [&loop](QProcess::ProcessState state) {
        if (state == QProcess::NotRunning)
            loop.quit();
    });
    child.setProcessChannelMode(QProcess::ForwardedChannels);
    child.setInputChannelMode(QProcess::ForwardedInputChannel);
    child.start(command.first(), command.mid(1));
    if (!child.waitForStarted(-1))
        throw std::runtime_error("cannot run " + command.first().toStdString() + ": " +
                                 child.errorString().toStdString());
    if (child.state() != QProcess::NotRunning)
        loop.exec();
    return (child.exitStatus() == QProcess::CrashExit ? 128 : 0) + child.exitCode();
}

} // namespace VirtualUnit
