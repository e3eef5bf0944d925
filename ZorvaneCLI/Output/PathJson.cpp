#include "ZorvaneCLI/Output/PathJson.h"

#include <cstdint>
#include <utf8proc.h>

namespace ZorvaneCLI {

void setPath(nlohmann::ordered_json& object, std::string_view path, const std::string& member)
{
    std::string text = validUtf8(path);
    const bool isExact = text == path;
    object[member] = std::move(text);
    if (!isExact) {
        object[member + "Bytes"] = base64(path);
    }
}

std::string validUtf8(std::string_view text)
{
    constexpr std::string_view replacement = "\xEF\xBF\xBD";
    std::string result;
    while (!text.empty()) {
        utf8proc_int32_t character = 0;
        const utf8proc_ssize_t length =
            utf8proc_iterate(reinterpret_cast<const utf8proc_uint8_t*>(text.data()),
                             static_cast<utf8proc_ssize_t>(text.size()), &character);
        const std::size_t taken = length > 0 ? static_cast<std::size_t>(length) : 1;
        result += length > 0 ? text.substr(0, taken) : replacement;
        text.remove_prefix(taken);
    }
    return result;
}

std::string base64(std::string_view bytes)
{
    constexpr std::string_view alphabet =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    for (std::size_t at = 0; at < bytes.size(); at += 3) {
        const std::string_view group = bytes.substr(at, 3);
        std::uint32_t bits = 0;
        for (std::size_t i = 0; i < 3; ++i) {
            bits = bits << 8 | (i < group.size() ? static_cast<unsigned char>(group[i]) : 0U);
        }
        for (std::size_t i = 0; i < 4; ++i) {
            text += i <= group.size() ? alphabet[bits >> (18 - 6 * i) & 63U] : '=';
        }
    }
    return text;
}

} // namespace ZorvaneCLI
