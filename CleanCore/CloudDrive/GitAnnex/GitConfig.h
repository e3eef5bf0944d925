#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace CleanCore {

/// One variable of a git configuration; see git-config(1).
struct GitSetting
{
    /// In lower case.
    std::string section;
    /// As written; empty without one.
    std::string subsection;
    /// In lower case.
    std::string name;
    /// Without quotes, escapes and comments; "true" for a variable without a value.
    std::string value;

    [[nodiscard]] bool operator==(const GitSetting&) const = default;
};

/// The variables in the text of a configuration file, in their order. Files that it includes are
/// not read, and lines that git would refuse are skipped.
[[nodiscard]] std::vector<GitSetting> parseGitConfig(std::string_view text);

/// The variables of the file at `path`; nothing if it is no regular file, larger than a megabyte,
/// or cannot be read.
[[nodiscard]] std::optional<std::vector<GitSetting>> readGitConfig(const std::string& path);

} // namespace CleanCore
