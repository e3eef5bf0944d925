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
/// is exactly "*" stands for every entry of the folder before it, hidden ones included. Nothing
/// fails: what cannot be expanded contributes nothing. Safe from any thread.
namespace PathExpander {

/// How many names a pattern may take up in folders where the same wildcard has been before, on
/// another way. Where links lead back, each wildcard multiplies the ways, to more than anybody can
/// wait for. A folder's first visit is not counted, so that a tree without such links is expanded
/// whole, however large it is.
constexpr std::size_t repeatLimit = 100'000;

/// What patterns stand for.
struct Expansion
{
    /// In pattern order, duplicates kept. Those from a pattern with "*" exist and are in name order
    /// per folder; others are not looked for.
    std::vector<std::string> bases;
    /// Whether more would have been found but for the repeatLimit or a shortage of descriptors or
    /// memory.
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

/// One pattern, its "*" components as they stand.
[[nodiscard]] std::string expand(const std::string& pattern, const std::string& home,
                                 const FileManager& fileManager);

/// The folder of a token; nothing for any other text.
[[nodiscard]] std::optional<std::string> expandToken(std::string_view pattern,
                                                     const FileManager& fileManager);

/// The existing paths that `components` ("/" first) match. Those before `first` are names, whatever
/// they are.
[[nodiscard]] Expansion expandGlob(const std::vector<std::string>& components,
                                   const FileManager& fileManager, const std::stop_token& stop = {},
                                   std::size_t first = 0);

} // namespace PathExpander
} // namespace CleanCore
