#include "CleanCore/CloudDrive/SyncClient/ClientMessage.h"

#include "CleanCore/Support/TextEquality.h"
#include "CleanCore/Support/Utf8.h"

#include <algorithm>
#include <cctype>

namespace CleanCore {

namespace {

constexpr char pathSeparator = '\x1e';

bool isBlank(char character)
{
    return std::isspace(static_cast<unsigned char>(character)) != 0;
}

} // namespace

ClientMessage parseClientMessage(std::string_view line)
{
    if (line.ends_with('\r')) {
        line.remove_suffix(1);
    }
    const std::size_t colon = std::min(line.find(':'), line.size());
    ClientMessage message;
    for (const char character : line.substr(0, colon)) {
        message.command += static_cast<char>(std::toupper(static_cast<unsigned char>(character)));
    }
    message.argument = line.substr(std::min(colon + 1, line.size()));
    return message;
}

std::string clientRequest(std::string_view command, std::span<const std::string> paths)
{
    std::string request = std::string(command) + ':';
    for (const std::string& path : paths) {
        if (&path != paths.data()) {
            request += pathSeparator;
        }
        request += path;
    }
    return request + '\n';
}

bool isSpeakable(std::string_view path)
{
    if (path.empty() || isBlank(path.back()) || !isValidUtf8(path)) {
        return false;
    }
    // What the clients trim, beyond ASCII.
    for (const std::string_view blank :
         {"\xc2\x85", "\u00a0", "\u1680", "\u2000", "\u2001", "\u2002", "\u2003", "\u2004",
          "\u2005", "\u2006", "\u2007", "\u2008", "\u2009", "\u200a", "\u2028", "\u2029", "\u202f",
          "\u205f", "\u3000"}) {
        if (path.ends_with(blank)) {
            return false;
        }
    }
    const auto isCut = [](char character) {
        return character == '\n' || character == '\r' || character == pathSeparator;
    };
    return std::ranges::none_of(path, isCut) && canonicalForm(path) == path;
}

std::optional<ClientFileStatus> parseFileStatus(std::string_view argument)
{
    constexpr std::string_view shared = "+SWM";
    const std::size_t colon = argument.find(':');
    if (colon == std::string_view::npos) {
        return std::nullopt;
    }
    std::string_view word = argument.substr(0, colon);
    if (word.ends_with(shared)) {
        word.remove_suffix(shared.size());
    }
    const ClientFileState state = word == "OK"     ? ClientFileState::synchronized
                                  : word == "SYNC" ? ClientFileState::synchronizing
                                                   : ClientFileState::notSynchronized;
    return ClientFileStatus{std::string(argument.substr(colon + 1)), state};
}

bool offersPlaceholders(std::string_view menuItem)
{
    return menuItem.starts_with("MAKE_ONLINE_ONLY:");
}

} // namespace CleanCore
