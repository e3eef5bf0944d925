#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace CleanCore {

/// Folders below every home that are never cleaned, in the order in which the guard tests them.
inline constexpr std::string_view protectedHomeSubpaths[] = {
    "Documents", "Desktop", "Downloads", "Pictures", "Music", "Movies", "Library/Mobile Documents",
};

/// Where one user's folders are on this platform.
struct UserFolders
{
    using Variables = std::function<std::optional<std::string>(const char* name)>;

    std::string home;
    std::string cacheFolder;
    std::string temporaryFolder;
    /// Folders that are never cleaned, beyond those that every platform protects: the XDG user
    /// folders under the names that the user gave them, and secrets.
    std::vector<std::string> protectedFolders;
    /// Default folders that are no folders of caches: links to home, to configuration, to a whole
    /// disk, or somebody else's. What is named through them counts as missing.
    std::vector<std::string> distrustedFolders = {};

    /// The folders of `home` as the environment gives them. XDG_CACHE_HOME and TMPDIR count only if
    /// they are absolute, resolve to a folder that the home's owner owns (TMPDIR: or that is
    /// sticky), and hold nothing but caches: not home or above it, not a protected folder, not
    /// configuration, not below ~/.local or /run, not a whole file system behind a link, by any
    /// link. The default folders are held to the same.
    [[nodiscard]] static UserFolders ofAccount(const std::string& home, const Variables& variables);

    /// The folders of a home that a run is confined to. The environment does not count.
    [[nodiscard]] static UserFolders confinedTo(const std::string& home);
};

} // namespace CleanCore
