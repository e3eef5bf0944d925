#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

namespace ZorvaneCLI {

/// Sets `member` to the path. A path that is not valid UTF-8 gets U+FFFD for its invalid bytes, and
/// a second member, named `member` with "Bytes" appended, holds the exact bytes in base64.
void setPath(nlohmann::ordered_json& object, std::string_view path,
             const std::string& member = "path");

/// Returns `text` with U+FFFD in place of every byte that is not part of valid UTF-8.
[[nodiscard]] std::string validUtf8(std::string_view text);

/// RFC 4648 base64, padded.
[[nodiscard]] std::string base64(std::string_view bytes);

} // namespace ZorvaneCLI
