#pragma once

#include <string>
#include <vector>

namespace CleanCore {

/// The one seam to external programs. Safe from any thread and from many at once.
class CommandRunning
{
public:
    CommandRunning() = default;
    CommandRunning(const CommandRunning&) = delete;
    CommandRunning& operator=(const CommandRunning&) = delete;
    virtual ~CommandRunning() = default;

    /// Runs the program at the absolute path `executable`, without a shell and without a search,
    /// with exactly these arguments, and waits for its end. Returns its standard output; "" if that
    /// is not valid UTF-8. Throws CleanCoreError (commandFailed, with the path as given) when its
    /// exit status is not 0, and another std::exception when it cannot be run. Blocks; not for the
    /// main thread.
    [[nodiscard]] virtual std::string run(const std::string& executable,
                                          const std::vector<std::string>& arguments) const = 0;
};

} // namespace CleanCore
