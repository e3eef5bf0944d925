#pragma once

#include <cstdlib>
#include <string_view>

namespace CleanCoreTests {

/// A number for everyday runs, and another for the long ones, with ZORVANE_RELIABILITY=long.
[[nodiscard]] inline std::size_t scaled(std::size_t everyday, std::size_t whole)
{
    const char* const mode = std::getenv("ZORVANE_RELIABILITY");
    return mode != nullptr && std::string_view(mode) == "long" ? whole : everyday;
}

} // namespace CleanCoreTests
