#pragma once

#include "CleanCore/Support/FileDescriptor.h"

#include <memory>
#include <optional>
#include <stop_token>
#include <string>

namespace ZorvaneCLI {

/// Turns Ctrl-C (and a request to terminate) into a stop request; a second signal ends the process
/// at once. A process has one, made before any other thread starts, so that no other thread
/// receives the signals.
class Interruption
{
public:
    Interruption();
    Interruption(const Interruption&) = delete;
    Interruption& operator=(const Interruption&) = delete;
    ~Interruption() = default;

    [[nodiscard]] std::stop_token token() const { return m_source.get_token(); }
    [[nodiscard]] bool happened() const { return m_source.stop_requested(); }

    /// Waits for a line from standard input and returns it without its end; nothing at the end of
    /// input or when a signal comes first.
    [[nodiscard]] std::optional<std::string> readLine() const;

private:
    std::stop_source m_source;
    // Becomes readable with the first signal. Shared with the thread that waits for signals, which
    // lives as long as the process.
    std::shared_ptr<const CleanCore::FileDescriptor> m_wake;
};

} // namespace ZorvaneCLI
