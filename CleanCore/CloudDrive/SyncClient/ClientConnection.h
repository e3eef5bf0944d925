#pragma once

#include "CleanCore/CloudDrive/SyncClient/ClientMessage.h"
#include "CleanCore/Support/FileDescriptor.h"

#include <chrono>
#include <optional>
#include <stop_token>
#include <string>
#include <string_view>

namespace CleanCore {

/// A connection to a sync client's socket, which is the user's own. Not for use by two threads.
class ClientConnection
{
public:
    using Clock = std::chrono::steady_clock;

    enum class Fault {
        /// Nobody listens there, or no longer.
        gone,
        /// The process behind the socket belongs to another user.
        foreign,
        /// No message came in time.
        silent,
        stopped,
    };

    explicit ClientConnection(std::stop_token stop) : m_stop(std::move(stop)) {}

    /// Connects to the socket of this name in `folder`, whose path may be of any length. Returns
    /// why that failed, nothing on success.
    [[nodiscard]] std::optional<Fault> open(const std::string& folder, const std::string& name);

    /// Sends text that consists of whole lines. Returns why it could not be sent until `deadline`.
    [[nodiscard]] std::optional<Fault> send(std::string_view text, Clock::time_point deadline);

    /// The next message, however many pieces it comes in. Nothing when none came until `deadline`;
    /// fault() then tells why.
    [[nodiscard]] std::optional<ClientMessage> receive(Clock::time_point deadline);

    /// The reason for the last missing message.
    [[nodiscard]] Fault fault() const { return m_fault; }

private:
    /// Waits for `events` of poll(2). Returns why they did not come.
    [[nodiscard]] std::optional<Fault> waitFor(short events, Clock::time_point deadline) const;
    [[nodiscard]] bool readMore();

    std::stop_token m_stop;
    FileDescriptor m_socket;
    std::string m_received;
    /// Up to where it was taken out.
    std::size_t m_read = 0;
    Fault m_fault = Fault::silent;
};

} // namespace CleanCore
