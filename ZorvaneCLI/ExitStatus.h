#pragma once

#include "Words/ExitStatus.h"

#include <stdexcept>

namespace ZorvaneCLI {

using Words::ExitStatus;

/// Ends the run with a status and one line on standard error. The message quotes arguments
/// unescaped; whoever prints it escapes it.
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
