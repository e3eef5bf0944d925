#pragma once

#include "CleanCore/CloudDrive/CloudRefusal.h"
#include "CleanCore/CloudDrive/SyncClient/ClientConnection.h"

#include <chrono>
#include <map>
#include <set>
#include <span>
#include <stop_token>
#include <string>
#include <vector>

namespace CleanCore {

/// The questions that a sync client answers, each within a time limit from its last sign of life.
/// Not for use by two threads.
class ClientConversation
{
public:
    using Duration = std::chrono::steady_clock::duration;

    ClientConversation(std::stop_token stop, Duration limit)
        : m_connection(std::move(stop)), m_limit(limit)
    {
    }

    /// Connects to the socket `name` in `folder`. Returns why that failed.
    [[nodiscard]] std::optional<CloudFailure> connect(const std::string& folder,
                                                      const std::string& name);

    /// Waits until the client has named its folders. Returns why it has not.
    [[nodiscard]] std::optional<CloudFailure> begin();

    /// The folders that it keeps in step with a server now, without trailing slashes.
    [[nodiscard]] const std::set<std::string>& folders() const { return m_folders; }

    /// Why nothing in `folder` can be released; nothing when the client keeps placeholders there.
    [[nodiscard]] std::optional<CloudFailure> findObstacle(const std::string& folder);

    /// What the client thinks of each of `paths`, which are speakable. Those for which it did not
    /// answer are missing.
    [[nodiscard]] std::map<std::string, ClientFileState>
    statesOf(std::span<const std::string> paths);

    /// Sends a request that the client never answers, for all of `paths`, of one of its folders.
    /// Returns why it could not be sent.
    [[nodiscard]] std::optional<CloudFailure> request(std::string_view command,
                                                      std::span<const std::string> paths);

    /// Waits until the client says something, or `deadline`. Returns whether it is still there.
    [[nodiscard]] bool listen(std::chrono::steady_clock::time_point deadline);

private:
    /// Messages that nobody asked for do not put the deadline off.
    [[nodiscard]] std::optional<ClientMessage> next(ClientConnection::Clock::time_point deadline);
    [[nodiscard]] std::chrono::steady_clock::time_point limit() const;

    ClientConnection m_connection;
    Duration m_limit;
    std::set<std::string> m_folders;
};

} // namespace CleanCore
