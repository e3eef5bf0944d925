#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

namespace CleanCore {

class FileManager;

/// Turns the patterns of a rule's base paths into folders.
///
/// A pattern is one of the tokens "$DARWIN_USER_CACHE_DIR" and "$DARWIN_USER_TEMP_DIR" as a whole
/// (this platform's per-user cache and temporary folder), "~", "~/…", or a path; a component that
/// is exactly "*" stands for every entry of the folder before it, hidden ones included. A pattern
/// that cannot be expanded contributes nothing and is no error. Safe from any thread.
namespace PathExpander {

/// The limit on names in folders that the same wildcard has already visited through another path.
/// Links that lead back multiply the paths with every wildcard, until nobody could wait for the
/// result. The first visit of a folder does not count, so a tree without such links is always
/// expanded completely.
constexpr std::size_t repeatLimit = 100'000;

/// The result of an expansion.
struct Expansion
{
    /// In pattern order, duplicates kept. Those from a pattern with "*" exist and are in name order
    /// per folder; the others may not exist.
    std::vector<std::string> bases;
    /// Whether bases are missing because of repeatLimit or a shortage of descriptors or memory.
    bool isCutShort = false;
};

/// Expands all patterns. After a stop request the result is incomplete.
[[nodiscard]] Expansion expansion(std::span<const std::string> patterns, const std::string& home,
                                  const FileManager& fileManager, const std::stop_token& stop = {});

/// The bases of the expansion alone.
[[nodiscard]] std::vector<std::string> expandAll(std::span<const std::string> patterns,
                                                 const std::string& home,
                                                 const FileManager& fileManager,
                                                 const std::stop_token& stop = {});

/// Expands one pattern except for its "*" components.
[[nodiscard]] std::string expand(const std::string& pattern, const std::string& home,
                                 const FileManager& fileManager);

/// The folder of a token; nothing for any other text.
[[nodiscard]] std::optional<std::string> expandToken(std::string_view pattern,
                                                     const FileManager& fileManager);

/// The existing paths that `components` ("/" first) match. Components before `first` are names,
/// even "*".
[[nodiscard]] Expansion expandGlob(const std::vector<std::string>& components,
                                   const FileManager& fileManager, const std::stop_token& stop = {},
                                   std::size_t first = 0);

} // namespace PathExpander
} // namespace CleanCore
