#pragma once

#include <cstdint>
#include <functional>
#include <string_view>

namespace CleanCore {

constexpr std::int32_t notUtf8 = -1;

/// Calls visit(character, its bytes) for each character in order; each byte that is not valid UTF-8
/// is a character of its own, `notUtf8`.
void forEachCharacter(std::string_view text,
                      const std::function<void(std::int32_t, std::string_view)>& visit);

[[nodiscard]] bool isValidUtf8(std::string_view text);

} // namespace CleanCore
