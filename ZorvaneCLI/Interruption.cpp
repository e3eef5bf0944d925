#include "ZorvaneCLI/Interruption.h"

#include "ZorvaneCLI/ExitStatus.h"

#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <poll.h>
#include <sys/eventfd.h>
#include <thread>
#include <unistd.h>

namespace ZorvaneCLI {

Interruption::Interruption()
    : m_wake(std::make_shared<const CleanCore::FileDescriptor>(::eventfd(0, EFD_CLOEXEC)))
{
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGINT);
    sigaddset(&signals, SIGTERM);
    sigaddset(&signals, SIGHUP);
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    std::thread([signals, source = m_source, wake = m_wake]() mutable {
        int signal = 0;
        while (sigwait(&signals, &signal) != 0) {
        }
        source.request_stop();
        const std::uint64_t once = 1;
        static_cast<void>(::write(wake->get(), &once, sizeof once));
        while (sigwait(&signals, &signal) != 0) {
        }
        std::_Exit(static_cast<int>(ExitStatus::interrupted));
    }).detach();
}

std::optional<std::string> Interruption::readLine() const
{
    std::string line;
    for (;;) {
        pollfd sources[] = {{STDIN_FILENO, POLLIN, 0}, {m_wake->get(), POLLIN, 0}};
        if (::poll(sources, 2, -1) < 0 && errno != EINTR) {
            return std::nullopt;
        }
        if (sources[1].revents != 0) {
            return std::nullopt;
        }
        char character = 0;
        if (sources[0].revents != 0 && ::read(STDIN_FILENO, &character, 1) != 1) {
            return std::nullopt;
        }
        if (sources[0].revents != 0 && character == '\n') {
            return line;
        }
        if (sources[0].revents != 0) {
            line += character;
        }
    }
}

} // namespace ZorvaneCLI
