#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace CleanCoreTests {

/// One entry of a tree that is written as text; see TemporaryFolder.
struct TreeTextEntry
{
    enum class Kind { file, folder, link, twin, pipe };

    std::string path;
    Kind kind = Kind::file;
    /// Of a link or a twin.
    std::string target;
    /// Of a file that does not hold "content".
    std::optional<std::int64_t> length;
    std::optional<unsigned> mode;
    std::optional<std::chrono::nanoseconds> age;
};

/// Throws std::invalid_argument for a text that is no tree.
[[nodiscard]] std::vector<TreeTextEntry> treeEntries(std::string_view text);

/// A path in quotes where it needs them.
[[nodiscard]] std::string quoted(const std::string& path);

} // namespace CleanCoreTests
