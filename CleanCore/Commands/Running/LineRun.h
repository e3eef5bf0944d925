#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

namespace CleanCore {

/// A program that tells by lines what it does, and is run to its end or until it is stopped.
struct LineRun
{
    /// Absolute; run without a shell and without a search.
    std::string executable;
    std::vector<std::string> arguments;
    /// Its working directory.
    std::string folder;
    /// Its environment variables whose names begin so are left out; empty for none.
    std::string hiddenVariables;
};

enum class LineRunEnd {
    /// By itself.
    finished,
    /// A stop was requested.
    stopped,
    late,
    /// It could not be started.
    failed,
};

struct LineRunResult
{
    LineRunEnd end = LineRunEnd::failed;
    /// The exit status, 128 + the signal that ended it, or the errno of a failed start.
    int status = 0;
    /// The last lines that it wrote to its standard error; at most some kilobytes.
    std::string complaint;
};

/// Runs the program in the locale C.UTF-8, without input and in a session of its own, and calls
/// `onLine` for each line of its standard output, without the line end, on this thread.
///
/// A stop request interrupts it and its process group like Ctrl-C, so that it can leave its files
/// in order; after some seconds it is killed. At the deadline it is killed at once. A failed start
/// is a result, and nothing is thrown but by `onLine`.
[[nodiscard]] LineRunResult
runForLines(const LineRun& run, const std::function<void(std::string_view)>& onLine,
            const std::stop_token& stop = {},
            std::optional<std::chrono::steady_clock::time_point> deadline = std::nullopt);

} // namespace CleanCore
