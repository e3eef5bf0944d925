#pragma once

#include <string_view>

namespace CleanCore {

[[nodiscard]] bool isValidUtf8(std::string_view text);

} // namespace CleanCore
