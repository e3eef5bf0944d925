#pragma once

#include "Zorvane/Application/ApplicationOptions.h"
#include "Zorvane/State/Environment.h"

#include <stdexcept>
#include <string>

namespace Zorvane {

/// A command line that the program cannot start with; what() tells people what to do.
class StartError : public std::runtime_error
{
public:
    StartError(ExitStatus status, const std::string& message)
        : std::runtime_error(message), m_status(status)
    {
    }
    [[nodiscard]] ExitStatus status() const { return m_status; }

private:
    ExitStatus m_status;
};

/// The home in use and the collaborators made for it. Points the process's environment into another
/// home, so it must run before any thread is started and before Qt reads the environment. Throws
/// StartError.
[[nodiscard]] Environment makeEnvironment(const ApplicationOptions& options);

} // namespace Zorvane
