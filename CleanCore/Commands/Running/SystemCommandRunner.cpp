#include "CleanCore/Commands/Running/SystemCommandRunner.h"

#include "CleanCore/Commands/Running/ChildProcess.h"
#include "CleanCore/Rules/CleanCoreError.h"
#include "CleanCore/Support/FileDescriptor.h"
#include "CleanCore/Support/Utf8.h"

#include <array>
#include <cerrno>
#include <cstdint>
#include <fcntl.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <system_error>
#include <unistd.h>

namespace CleanCore {

namespace {

[[noreturn]] void fail(int error, const char* what)
{
    throw std::system_error(error, std::generic_category(), what);
}

struct Pipe
{
    FileDescriptor readEnd;
    FileDescriptor writeEnd;

    [[nodiscard]] static Pipe make()
    {
        std::array<int, 2> ends = {};
        if (::pipe2(ends.data(), O_CLOEXEC) != 0) {
            fail(errno, "pipe2");
        }
        return {FileDescriptor(ends[0]), FileDescriptor(ends[1])};
    }
};

/// Wakes a reader that waits for a child's output.
class Wakeup
{
public:
    Wakeup() : m_descriptor(::eventfd(0, EFD_CLOEXEC))
    {
        if (!m_descriptor.isOpen()) {
            fail(errno, "eventfd");
        }
    }
    void raise() const
    {
        const std::uint64_t one = 1;
        // It can fail only when it was raised before.
        static_cast<void>(!::write(m_descriptor.get(), &one, sizeof one));
    }
    [[nodiscard]] int descriptor() const { return m_descriptor.get(); }

private:
    FileDescriptor m_descriptor;
};

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
            fail(errno, "poll");
        }
        if (watched[1].revents != 0) {
            fail(ECANCELED, "stopped");
        }
        const ssize_t count = ::read(pipe, buffer.data(), buffer.size());
        if (count == 0) {
            return output;
        }
        if (count > 0) {
            output.append(buffer.data(), static_cast<std::size_t>(count));
        } else if (errno != EINTR) {
            fail(errno, "read");
        }
    }
}

} // namespace

std::string SystemCommandRunner::run(const std::string& executable,
                                     const std::vector<std::string>& arguments) const
{
    if (m_stop.stop_requested()) {
        fail(ECANCELED, "stopped");
    }
    const Wakeup wakeup;
    Pipe pipe = Pipe::make();
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
        fail(ECANCELED, "stopped");
    }
    if (status != 0) {
        throw CleanCoreError::commandFailed(executable, status);
    }
    return isValidUtf8(output) ? output : std::string();
}

} // namespace CleanCore
