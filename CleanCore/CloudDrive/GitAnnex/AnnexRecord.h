#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace CleanCore {

/// One line of what git-annex tells with --json.
struct AnnexRecord
{
    /// Relative to the folder it ran in, with U+FFFD for bytes that are not UTF-8; empty when the
    /// line is about no file.
    std::string file;
    std::string key;
    /// The folder of the key's content, below the one for all contents.
    std::string hashFolder;
    /// The content's length in bytes; 0 when git-annex does not know it.
    std::int64_t bytes = 0;
    /// Whether the file is done; nothing while it is under way.
    std::optional<bool> success;
    /// The bytes that have arrived, of `bytes`; nothing in lines that are no progress.
    std::optional<std::int64_t> arrived;
    /// Why it did not succeed, in git-annex's words, without its advice to override the checks.
    std::string reason;
};

/// Nothing for a line that is no JSON object. A member that is missing or of another type counts
/// as empty.
[[nodiscard]] std::optional<AnnexRecord> parseAnnexRecord(std::string_view line);

} // namespace CleanCore
