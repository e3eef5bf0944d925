#include "Zorvane/Desktop/TerminationSignals.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <sys/eventfd.h>
#include <unistd.h>

namespace Zorvane {

namespace {

constexpr std::array handledSignals = {SIGTERM, SIGINT, SIGHUP};
constexpr int shellStatusOfSignals = 128;

// A signal handler can reach only static variables.
std::atomic<int> event = -1;
std::atomic<bool> wasSignalled = false;

/// Calls only functions that signal-safety(7) lists.
void handle(int signal)
{
    if (wasSignalled.exchange(true)) {
        ::_exit(shellStatusOfSignals + signal);
    }
    const int error = errno;
    const std::uint64_t once = 1;
    static_cast<void>(!::write(event, &once, sizeof once));
    errno = error;
}

void setHandlers(void (*handler)(int))
{
    struct sigaction action = {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    for (const int signal : handledSignals) {
        ::sigaction(signal, &action, nullptr);
    }
}

} // namespace

TerminationSignals::TerminationSignals()
    : m_event(::eventfd(0, EFD_CLOEXEC)), m_notifier(m_event.get(), QSocketNotifier::Read)
{
    event = m_event.get();
    setHandlers(handle);
    QObject::connect(&m_notifier, &QSocketNotifier::activated, &m_notifier,
                     [this] { m_notifier.setEnabled(false); });
}

TerminationSignals::~TerminationSignals()
{
    setHandlers(SIG_DFL);
}

} // namespace Zorvane
