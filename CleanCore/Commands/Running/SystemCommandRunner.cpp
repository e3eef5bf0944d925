#include "CleanCore/Commands/Running/SystemCommandRunner.h"

#include "CleanCore/Commands/Running/ChildPipe.h"
#include "CleanCore/Commands/Running/ChildProcess.h"
#include "CleanCore/Rules/CleanCoreError.h"
#include "CleanCore/Support/Utf8.h"

#include <array>
#include <cerrno>
#include <poll.h>
#include <system_error>
#include <unistd.h>

namespace CleanCore {

namespace {

/// Reads until all writers have closed the pipe. Throws std::system_error, operation_canceled if
/// `wakeup` is raised before.
std::string readToEnd(int pipe, const Wakeup& wakeup)
{
    constexpr std::size_t chunk = 65'536;
    std::string output;
    std::array<char, chunk> buffer = {};
    std::array<pollfd, 2> watched = {pollfd{pipe, POLLIN, 0},
                                     pollfd{wakeup.descriptor(), POLLIN, 0}};
    while (true) {
        if (::poll(watched.data(), watched.size(), -1) < 0) {
            if (errno == EINTR) {
                continue;
            }
            failWith(errno, "poll");
        }
        if (watched[1].revents != 0) {
            failWith(ECANCELED, "stopped");
        }
        const ssize_t count = ::read(pipe, buffer.data(), buffer.size());
        if (count == 0) {
            return output;
        }
        if (count > 0) {
            output.append(buffer.data(), static_cast<std::size_t>(count));
        } else if (errno != EINTR) {
            failWith(errno, "read");
        }
    }
}

} // namespace

std::string SystemCommandRunner::run(const std::string& executable,
                                     const std::vector<std::string>& arguments) const
{
    if (m_stop.stop_requested()) {
        failWith(ECANCELED, "stopped");
    }
    const Wakeup wakeup;
    ChildPipe pipe = ChildPipe::make();
    ChildProcess child = ChildProcess::start(executable, arguments, pipe.writeEnd.get());
    pipe.writeEnd.reset();
    std::string output;
    {
        const std::stop_callback endEarly(m_stop, [&] {
            wakeup.raise();
            child.kill();
        });
        output = readToEnd(pipe.readEnd.get(), wakeup);
        child.waitForEnd();
    }
    const int status = child.collect();
    if (status != 0 && m_stop.stop_requested()) {
        // It did not fail by itself.
        failWith(ECANCELED, "stopped");
    }
    if (status != 0) {
        throw CleanCoreError::commandFailed(executable, status);
    }
    return isValidUtf8(output) ? output : std::string();
}

} // namespace CleanCore
