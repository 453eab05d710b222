#include "virtualbus/ChildProcess.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <poll.h>
#include <spawn.h>
#include <stdexcept>
#include <sys/signalfd.h>
#include <sys/wait.h>
#include <unistd.h>

namespace VirtualUnit {

namespace {

sigset_t handledSignals()
{
    sigset_t set;
    sigemptyset(&set);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGCHLD})
        sigaddset(&set, signal);
    return set;
}

int spawn(const std::vector<std::string>& arguments, int& process)
{
    std::vector<std::string> copies = arguments;
    std::vector<char*> pointers;
    pointers.reserve(copies.size() + 1);
    for (std::string& argument : copies)
        pointers.push_back(argument.data());
    pointers.push_back(nullptr);
    // The child starts with no signal blocked.
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    sigset_t none;
    sigemptyset(&none);
    posix_spawnattr_setsigmask(&attributes, &none);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK);
    const int error =
        posix_spawnp(&process, pointers[0], nullptr, &attributes, pointers.data(), environ);
    posix_spawnattr_destroy(&attributes);
    return error;
}

} // namespace

void ChildProcess::blockSignals()
{
    const sigset_t set = handledSignals();
    pthread_sigmask(SIG_BLOCK, &set, nullptr);
}

ChildProcess::ChildProcess(const std::vector<std::string>& arguments)
{
    const sigset_t set = handledSignals();
    m_signals = signalfd(-1, &set, SFD_CLOEXEC | SFD_NONBLOCK);
    if (m_signals < 0)
        throw std::runtime_error(std::string("cannot watch signals: ") + std::strerror(errno));
    if (const int error = spawn(arguments, m_process)) {
        close(m_signals);
        throw std::runtime_error("cannot run " + arguments[0] + ": " + std::strerror(error));
    }
}

ChildProcess::~ChildProcess()
{
    close(m_signals);
}

int ChildProcess::wait(int descriptor, const std::function<void()>& onReadable)
{
    int status = 0;
    while (!handleSignals(status)) {
        std::array<pollfd, 2> watched = {{{m_signals, POLLIN, 0}, {descriptor, POLLIN, 0}}};
        if (poll(watched.data(), watched.size(), -1) > 0 && (watched[1].revents & POLLIN) != 0)
            onReadable();
    }
    return status;
}

bool ChildProcess::handleSignals(int& status) const
{
    signalfd_siginfo info{};
    while (read(m_signals, &info, sizeof info) == static_cast<ssize_t>(sizeof info)) {
        const int signal = static_cast<int>(info.ssi_signo);
        // What the terminal sends goes to the whole group, the child has it already.
        if (signal != SIGCHLD && info.ssi_code != SI_KERNEL)
            kill(m_process, signal);
    }
    int raw = 0;
    if (waitpid(m_process, &raw, WNOHANG) != m_process)
        return false;
    status = WIFEXITED(raw) ? WEXITSTATUS(raw) : 128 + WTERMSIG(raw);
    return true;
}

} // namespace VirtualUnit
