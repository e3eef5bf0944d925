#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

/// The lines that sync clients and their users exchange on the client's socket: "COMMAND:argument".
namespace CleanCore {

struct ClientMessage
{
    /// In upper case.
    std::string command;
    /// Everything behind the first colon, further colons included.
    std::string argument;

    [[nodiscard]] bool operator==(const ClientMessage&) const = default;
};

/// `line` is without its end.
[[nodiscard]] ClientMessage parseClientMessage(std::string_view line);

/// One request, with its line end, for all of `paths`; see isSpeakable().
[[nodiscard]] std::string clientRequest(std::string_view command,
                                        std::span<const std::string> paths);

/// Whether a request reaches exactly this path. Clients cut lines into paths, trim them, and
/// compose their characters: another file, or none, would be meant.
[[nodiscard]] bool isSpeakable(std::string_view path);

/// What a client thinks of a file.
enum class ClientFileState { synchronized, synchronizing, notSynchronized };

struct ClientFileStatus
{
    std::string path;
    ClientFileState state = ClientFileState::notSynchronized;
};

/// The content of a STATUS message; nothing if it has no path.
[[nodiscard]] std::optional<ClientFileStatus> parseFileStatus(std::string_view argument);

/// Whether a MENU_ITEM message with this argument offers the release of downloads, also where it is
/// switched off because nothing is downloaded. Only a folder that has placeholders offers it.
[[nodiscard]] bool offersPlaceholders(std::string_view menuItem);

} // namespace CleanCore
