#pragma once

#include <stdexcept>
#include <string>

namespace CleanCore {

/// An option that a program cannot start with. what() is one line that says what to do; it quotes
/// what it was given as it is.
class StartError : public std::runtime_error
{
public:
    /// As the exit status of the program.
    enum class Reason : int {
        wrongUsage = 2,
        /// The catalog or its folder is missing or invalid, or it would clean too much.
        catalogUnusable = 3,
    };

    StartError(Reason reason, const std::string& message)
        : std::runtime_error(message), m_reason(reason)
    {
    }
    [[nodiscard]] Reason reason() const { return m_reason; }

private:
    Reason m_reason;
};

} // namespace CleanCore
