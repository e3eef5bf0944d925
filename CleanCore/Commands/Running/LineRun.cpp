#include "CleanCore/Commands/Running/LineRun.h"

#include "CleanCore/Commands/Running/ChildPipe.h"
#include "CleanCore/Commands/Running/ChildProcess.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <poll.h>
#include <system_error>
#include <unistd.h>

namespace CleanCore {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::size_t chunk = 65'536;
constexpr std::size_t keptComplaint = 4096;
/// How long an interrupted program may take to end.
constexpr std::chrono::seconds timeToEnd{10};

/// Turns pieces of output into lines.
class Lines
{
public:
    explicit Lines(const std::function<void(std::string_view)>& onLine) : m_onLine(onLine) {}

    void add(std::string_view piece)
    {
        for (std::size_t end = piece.find('\n'); end != std::string_view::npos;
             end = piece.find('\n')) {
            m_begun += piece.substr(0, end);
            m_onLine(m_begun);
            m_begun.clear();
            piece.remove_prefix(end + 1);
        }
        m_begun += piece;
    }

private:
    const std::function<void(std::string_view)>& m_onLine;
    std::string m_begun;
};

/// Reads once. Returns whether the pipe is still open.
template <typename Take>
bool readSome(int pipe, const Take& take)
{
    std::array<char, chunk> buffer = {};
    const ssize_t count = ::read(pipe, buffer.data(), buffer.size());
    if (count < 0) {
        return errno == EINTR;
    }
    take(std::string_view(buffer.data(), static_cast<std::size_t>(count)));
    return count > 0;
}

/// Milliseconds for poll(2) until `time`, which may have passed; -1 without one.
int timeout(const std::optional<Clock::time_point>& time)
{
    if (!time) {
        return -1;
    }
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(*time - Clock::now()).count();
    return static_cast<int>(std::clamp<std::int64_t>(left, 0, 1'000'000));
}

class Reading
{
public:
    Reading(const ChildProcess& child, const Wakeup& stopping)
        : m_child(child), m_stopping(stopping)
    {
    }

    LineRunEnd toEnd(int output, int errors, const std::function<void(std::string_view)>& onLine,
                     std::optional<Clock::time_point> deadline)
    {
        Lines lines(onLine);
        std::array<pollfd, 3> watched = {pollfd{output, POLLIN, 0}, pollfd{errors, POLLIN, 0},
                                         pollfd{m_stopping.descriptor(), POLLIN, 0}};
        auto end = LineRunEnd::finished;
        while (watched[0].fd >= 0 || watched[1].fd >= 0) {
            const int ready = ::poll(watched.data(), watched.size(), timeout(deadline));
            if (ready == 0) {
                m_child.kill();
                return end == LineRunEnd::stopped ? end : LineRunEnd::late;
            }
            if (ready < 0) {
                continue; // EINTR; nothing else can happen to these descriptors.
            }
            if (watched[2].revents != 0) {
                watched[2].fd = -1;
                m_child.interrupt();
                end = LineRunEnd::stopped;
                deadline = Clock::now() + timeToEnd;
            }
            if (watched[0].revents != 0 &&
                !readSome(output, [&](std::string_view piece) { lines.add(piece); })) {
                watched[0].fd = -1;
            }
            if (watched[1].revents != 0 &&
                !readSome(errors, [&](std::string_view piece) { complain(piece); })) {
                watched[1].fd = -1;
            }
        }
        return end;
    }

    std::string complaint;

private:
    void complain(std::string_view piece)
    {
        complaint += piece;
        if (complaint.size() > keptComplaint) {
            complaint.erase(0, complaint.size() - keptComplaint);
        }
    }

    const ChildProcess& m_child;
    const Wakeup& m_stopping;
};

} // namespace

LineRunResult runForLines(const LineRun& run, const std::function<void(std::string_view)>& onLine,
                          const std::stop_token& stop, std::optional<Clock::time_point> deadline)
{
    try {
        const Wakeup stopping;
        ChildPipe output = ChildPipe::make();
        ChildPipe errors = ChildPipe::make();
        ChildProcess child = ChildProcess::start(
            run.executable, run.arguments, output.writeEnd.get(),
            {run.folder, "C.UTF-8", errors.writeEnd.get(), true, run.hiddenVariables});
        output.writeEnd.reset();
        errors.writeEnd.reset();
        Reading reading(child, stopping);
        LineRunResult result;
        {
            const std::stop_callback wake(stop, [&] { stopping.raise(); });
            result.end =
                reading.toEnd(output.readEnd.get(), errors.readEnd.get(), onLine, deadline);
        }
        result.status = child.collect();
        result.complaint = std::move(reading.complaint);
        return result;
    } catch (const std::system_error& error) {
        return {LineRunEnd::failed, error.code().value(), {}};
    }
}

} // namespace CleanCore
