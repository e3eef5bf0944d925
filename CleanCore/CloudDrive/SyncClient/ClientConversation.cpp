#include "CleanCore/CloudDrive/SyncClient/ClientConversation.h"

#include "CleanCore/Support/PathText.h"

#include <algorithm>

namespace CleanCore {

namespace {

using Fault = ClientConnection::Fault;

/// Questions that may be open at once.
constexpr std::size_t openQuestions = 100;

CloudFailure failureOf(Fault fault)
{
    using enum CloudRefusalReason;
    return {fault == Fault::foreign   ? foreignClient
            : fault == Fault::stopped ? stopped
                                      : clientUnreachable};
}

std::optional<CloudFailure> failureOf(const std::optional<Fault>& fault)
{
    return fault ? std::optional(failureOf(*fault)) : std::nullopt;
}

} // namespace

std::chrono::steady_clock::time_point ClientConversation::limit() const
{
    return std::chrono::steady_clock::now() + m_limit;
}

std::optional<ClientMessage> ClientConversation::next(ClientConnection::Clock::time_point deadline)
{
    auto message = m_connection.receive(deadline);
    if (message && message->command == "REGISTER_PATH") {
        m_folders.insert(std::string(PathText::withoutTrailingSlashes(message->argument)));
    } else if (message && message->command == "UNREGISTER_PATH") {
        m_folders.erase(std::string(PathText::withoutTrailingSlashes(message->argument)));
    }
    return message;
}

std::optional<CloudFailure> ClientConversation::connect(const std::string& folder,
                                                        const std::string& name)
{
    return failureOf(m_connection.open(folder, name));
}

std::optional<CloudFailure> ClientConversation::begin()
{
    const auto deadline = limit();
    // It is answered after the folders are named.
    if (const auto fault = m_connection.send("VERSION:\n", limit())) {
        return failureOf(*fault);
    }
    while (const auto message = next(deadline)) {
        if (message->command == "VERSION") {
            return std::nullopt;
        }
    }
    return failureOf(m_connection.fault());
}

std::optional<CloudFailure> ClientConversation::findObstacle(const std::string& folder)
{
    const auto deadline = limit();
    const std::string question = clientRequest("GET_MENU_ITEMS", std::span(&folder, 1));
    if (const auto fault = m_connection.send(question, limit())) {
        return failureOf(*fault);
    }
    bool hasPlaceholders = false;
    while (const auto message = next(deadline)) {
        hasPlaceholders = hasPlaceholders || (message->command == "MENU_ITEM" &&
                                              offersPlaceholders(message->argument));
        if (message->command == "GET_MENU_ITEMS" && message->argument == "END") {
            return hasPlaceholders
                       ? std::nullopt
                       : std::optional(CloudFailure{CloudRefusalReason::noPlaceholders});
        }
    }
    return failureOf(m_connection.fault());
}

std::map<std::string, ClientFileState>
ClientConversation::statesOf(std::span<const std::string> paths)
{
    std::map<std::string, ClientFileState> states;
    for (std::size_t begin = 0; begin < paths.size(); begin += openQuestions) {
        const auto part = paths.subspan(begin, std::min(openQuestions, paths.size() - begin));
        std::set<std::string_view> open;
        std::string questions;
        for (const std::string& path : part) {
            questions += clientRequest("RETRIEVE_FILE_STATUS", std::span(&path, 1));
            open.insert(path);
        }
        if (m_connection.send(questions, limit())) {
            return states;
        }
        const auto deadline = limit();
        while (!open.empty()) {
            const auto message = next(deadline);
            if (!message) {
                return states;
            }
            // It also tells about files that nobody asked for.
            const auto status =
                message->command == "STATUS" ? parseFileStatus(message->argument) : std::nullopt;
            if (status && std::ranges::find(part, status->path) != part.end()) {
                // A later word about the same file is the newer one.
                open.erase(status->path);
                states[status->path] = status->state;
            }
        }
    }
    return states;
}

std::optional<CloudFailure> ClientConversation::request(std::string_view command,
                                                        std::span<const std::string> paths)
{
    return failureOf(m_connection.send(clientRequest(command, paths), limit()));
}

bool ClientConversation::listen(std::chrono::steady_clock::time_point deadline)
{
    return m_connection.receive(deadline) || m_connection.fault() != Fault::gone;
}

} // namespace CleanCore
