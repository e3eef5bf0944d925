#pragma once

#include "CleanCore/Support/FileDescriptor.h"

#include <memory>
#include <optional>
#include <stop_token>
#include <string>

namespace ZorvaneCLI {

/// Turns Ctrl-C (and a request to terminate) into a stop request. There is one per process, made
/// before any other thread is started, so that no other thread ever receives the signals. A second
/// signal ends the process at once.
class Interruption
{
public:
    Interruption();
    Interruption(const Interruption&) = delete;
    Interruption& operator=(const Interruption&) = delete;
    ~Interruption() = default;

    [[nodiscard]] std::stop_token token() const { return m_source.get_token(); }
    [[nodiscard]] bool happened() const { return m_source.stop_requested(); }

    /// One line from standard input without its end; nothing at the end of input or when a signal
    /// comes first.
    [[nodiscard]] std::optional<std::string> readLine() const;

private:
    std::stop_source m_source;
    // Becomes readable with the first signal. The thread that waits for signals lives as long as
    // the process and shares it.
    std::shared_ptr<const CleanCore::FileDescriptor> m_wake;
};

} // namespace ZorvaneCLI
