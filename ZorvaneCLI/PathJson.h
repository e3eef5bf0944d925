#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

namespace ZorvaneCLI {

/// Sets "path", or another member; for a path that is not valid UTF-8 with U+FFFD in it, and its
/// exact bytes in base64 as "pathBytes", or the other member's name with "Bytes".
void setPath(nlohmann::ordered_json& object, std::string_view path,
             const std::string& member = "path");

/// `text` with U+FFFD for every byte that is not part of valid UTF-8.
[[nodiscard]] std::string validUtf8(std::string_view text);

/// RFC 4648 base64, padded.
[[nodiscard]] std::string base64(std::string_view bytes);

} // namespace ZorvaneCLI
