#pragma once

#include <stdexcept>

namespace ZorvaneCLI {

/// What the process ends with; scripts rely on the numbers.
enum class ExitStatus : int {
    done = 0,
    /// Done, but something was skipped, refused or unreadable.
    incomplete = 1,
    wrongUsage = 2,
    /// The catalog or its folder is missing or invalid.
    catalogUnusable = 3,
    /// Nobody agreed to a removal.
    refused = 4,
    interrupted = 130,
};

/// Ends the run with a status and one line on standard error. The message quotes what it was given
/// as it is.
class CommandError : public std::runtime_error
{
public:
    CommandError(ExitStatus status, const std::string& message)
        : std::runtime_error(message), m_status(status)
    {
    }
    [[nodiscard]] ExitStatus status() const { return m_status; }

private:
    ExitStatus m_status;
};

} // namespace ZorvaneCLI
