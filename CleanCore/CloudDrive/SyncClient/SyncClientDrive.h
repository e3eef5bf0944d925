#pragma once

#include "CleanCore/CloudDrive/CloudDrive.h"
#include "CleanCore/CloudDrive/SyncClient/Placeholders.h"

#include <chrono>
#include <string>
#include <vector>

namespace CleanCore {

class ClientConversation;

/// The folders that a desktop client of Nextcloud or its relatives keeps in step with a server, and
/// whose files can become placeholders.
///
/// All work is the client's. It is asked over its socket, and it releases a file only when that is
/// on the server as it is here: length and time of change are compared again by the client just
/// before. Before it is asked, it must call the file synchronized, and nobody may have the file
/// open for writing. Folders are never asked for, only files, so that what is pinned below stays
/// so. The client does not answer; the files themselves tell when it is done.
///
/// An immutable value.
class SyncClientDrive : public CloudDrive
{
public:
    struct Client
    {
        std::string name;
        /// The folder of its socket, which is named "socket".
        std::string socketFolder;
        /// What its placeholders' names end in; empty if they keep their names.
        std::string suffix;
        /// The home that the run is confined to, or empty: folders outside do not exist.
        std::string confinement = {};
    };

    struct Limits
    {
        /// Until an answer.
        std::chrono::steady_clock::duration answer = std::chrono::seconds(5);
        /// From asking until the client has done it. Its next run may begin only after a pause.
        std::chrono::steady_clock::duration completion = std::chrono::minutes(2);
        /// Between two looks at the files.
        std::chrono::steady_clock::duration look = std::chrono::milliseconds(250);
    };

    explicit SyncClientDrive(Client client, const Limits& limits)
        : m_client(std::move(client)), m_limits(limits), m_placeholders(m_client.suffix)
    {
    }

    [[nodiscard]] std::string name() const override { return m_client.name; }
    [[nodiscard]] std::vector<CloudContainer>
    containers(const std::stop_token& stop) const override;
    [[nodiscard]] CloudMeasuring measuring() const override { return CloudMeasuring::byEntry; }
    [[nodiscard]] std::vector<ICloudMeasure> measure(const std::string& container,
                                                     std::span<const std::string> paths,
                                                     std::optional<Deadline> deadline,
                                                     const std::stop_token& stop) const override;
    [[nodiscard]] CloudReply release(const std::string& path,
                                     const CloudWatch& watch) const override;
    [[nodiscard]] CloudReply fetch(const std::string& path, const CloudWatch& watch) const override;
    /// Files that the client does in the time until its limit are done, whether it is still there
    /// or not. Once it is gone nothing is waited for.
    [[nodiscard]] CloudReply await(std::span<const CloudPending> pending,
                                   const CloudWatch& watch) const override;

private:
    [[nodiscard]] std::optional<CloudFailure> connect(ClientConversation& conversation) const;
    /// Begins the conversation and returns why nothing at `path` can be asked for.
    [[nodiscard]] std::optional<CloudFailure> beginFor(const std::string& path,
                                                       ClientConversation& conversation) const;
    [[nodiscard]] bool isReachable(const std::string& path) const;
    [[nodiscard]] std::vector<std::string> releasable(const std::string& path,
                                                      ClientConversation& conversation,
                                                      const std::stop_token& stop,
                                                      CloudReply& reply) const;
    void ask(CloudRequestKind kind, std::span<const std::string> paths,
             ClientConversation& conversation, CloudReply& reply) const;
    [[nodiscard]] bool isDone(const CloudPending& pending, CloudReply& reply) const;

    Client m_client;
    Limits m_limits;
    Placeholders m_placeholders;
};

} // namespace CleanCore
