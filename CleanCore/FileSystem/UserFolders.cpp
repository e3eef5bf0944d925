#include "CleanCore/FileSystem/UserFolders.h"

#include "CleanCore/Support/PathText.h"

#include <algorithm>
#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <string_view>
#include <sys/stat.h>

namespace CleanCore {

namespace {

constexpr const char* alwaysProtected[] = {
    "Videos", "Templates",       "Public", ".ssh",
    ".gnupg", ".password-store", ".pki",   ".local/share/keyrings",
};
// Configuration and data: no variable may name them. Each may be a link to another place.
constexpr std::string_view configurationAndData[] = {".config", ".local", ".local/share",
                                                     ".local/state"};

std::optional<std::string> resolvedFolder(const std::string& path, struct stat& status)
{
    char* const real = ::realpath(path.c_str(), nullptr);
    if (real == nullptr) {
        return std::nullopt;
    }
    std::string result = real;
    std::free(real);
    if (::stat(result.c_str(), &status) != 0 || !S_ISDIR(status.st_mode)) {
        return std::nullopt;
    }
    return result;
}

std::string resolvedOrSame(const std::string& path)
{
    struct stat status = {};
    return resolvedFolder(path, status).value_or(PathText::standardized(path));
}

bool areRelated(std::string_view a, std::string_view b)
{
    return PathText::isSameOrInside(a, b) || PathText::isSameOrInside(b, a);
}

/// The value of one line of user-dirs.dirs, XDG_NAME_DIR="$HOME/relative" or ="/absolute"; see
/// user-dirs.dirs(5).
std::optional<std::string> userDirectory(std::string_view line, const std::string& home)
{
    line.remove_prefix(std::min(line.find_first_not_of(" \t"), line.size()));
    const std::size_t equals = line.find('=');
    if (line.substr(0, 4) != "XDG_" || equals == std::string_view::npos ||
        line.substr(0, equals).find("_DIR") == std::string_view::npos) {
        return std::nullopt;
    }
    const std::size_t open = line.find('"', equals);
    if (open == std::string_view::npos) {
        return std::nullopt;
    }
    std::string value;
    for (std::size_t i = open + 1; i < line.size() && line[i] != '"'; ++i) {
        if (line[i] == '\\' && i + 1 < line.size()) {
            ++i;
        }
        value += line[i];
    }
    constexpr std::string_view homePrefix = "$HOME";
    if (value.compare(0, homePrefix.size(), homePrefix) == 0) {
        value = home + "/" + value.substr(homePrefix.size());
    }
    if (value.empty() || value.front() != '/') {
        return std::nullopt;
    }
    value = PathText::standardized(value);
    // This is how the format says that a folder is disabled.
    if (PathText::isSameOrInside(home, value) ||
        PathText::isSameOrInside(resolvedOrSame(home), resolvedOrSame(value))) {
        return std::nullopt;
    }
    return value;
}

std::vector<std::string> protectedFolders(const std::string& home, const std::string& configuration)
{
    std::vector<std::string> folders;
    for (const char* name : alwaysProtected) {
        folders.push_back(PathText::join(home, name));
    }
    const std::string path = PathText::join(configuration, "user-dirs.dirs");
    struct stat status = {};
    // Only a small regular file can be of this format; reading a FIFO would never end.
    constexpr off_t largest = off_t{1} << 20;
    if (::stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode) ||
        status.st_size > largest) {
        return folders;
    }
    std::ifstream file(path, std::ios::binary);
    for (std::string line; std::getline(file, line);) {
        if (auto folder = userDirectory(line, home)) {
            folders.push_back(std::move(*folder));
        }
    }
    return folders;
}

/// Whether a folder, by its name or by its resolved path, may hold more than caches.
bool holdsMoreThanCaches(const std::string& name, const std::string& resolved,
                         const UserFolders& folders)
{
    const std::string home = resolvedOrSame(folders.home);
    const auto isAt = [&](const std::string& kept) {
        const std::string target = resolvedOrSame(kept);
        // One that is a link to home or above it would bar everything; it bars nothing.
        return !PathText::isSameOrInside(home, target) && areRelated(resolved, target);
    };
    const auto isKept = [&](std::string_view kept) {
        return PathText::isSameOrInside(name, PathText::join(folders.home, kept)) ||
               PathText::isSameOrInside(name, PathText::join(home, kept)) ||
               isAt(PathText::join(home, kept));
    };
    return PathText::isSameOrInside(home, resolved) || PathText::isSameOrInside(resolved, "/run") ||
           std::ranges::any_of(configurationAndData, isKept) ||
           std::ranges::any_of(protectedHomeSubpaths, isKept) ||
           std::any_of(folders.protectedFolders.begin(), folders.protectedFolders.end(), isAt);
}

/// Whether a link leads to the root of a file system: a whole disk rather than a folder of caches.
bool isLinkToMount(const std::string& name, const std::string& resolved)
{
    struct stat entry = {};
    struct statx target = {};
    return ::lstat(name.c_str(), &entry) == 0 && S_ISLNK(entry.st_mode) &&
           ::statx(AT_FDCWD, resolved.c_str(), 0, STATX_TYPE, &target) == 0 &&
           (target.stx_attributes & STATX_ATTR_MOUNT_ROOT) != 0;
}

enum class Sticky { refused, accepted };

std::optional<std::string> usable(const std::optional<std::string>& value, Sticky sticky,
                                  const UserFolders& folders)
{
    struct stat home = {};
    struct stat status = {};
    if (!value || value->empty() || value->front() != '/' ||
        ::stat(folders.home.c_str(), &home) != 0) {
        return std::nullopt;
    }
    const std::optional<std::string> folder = resolvedFolder(*value, status);
    // As text, ".." behind a link would name a folder that was not judged.
    std::string path = PathText::standardized(*value);
    const bool isSticky = (status.st_mode & S_ISVTX) != 0;
    if (!folder || (status.st_uid != home.st_uid && !(isSticky && sticky == Sticky::accepted)) ||
        holdsMoreThanCaches(path, *folder, folders) || isLinkToMount(path, *folder)) {
        return std::nullopt;
    }
    return resolvedOrSame(path) == *folder ? path : *folder;
}

/// The folder that counts where no variable names one; distrusted where it leads to more than
/// caches.
std::string defaultFolder(std::string path, Sticky sticky, UserFolders& folders)
{
    struct stat entry = {};
    if (::lstat(path.c_str(), &entry) == 0 && !usable(path, sticky, folders)) {
        folders.distrustedFolders.push_back(path);
    }
    return path;
}

} // namespace

UserFolders UserFolders::ofAccount(const std::string& home, const Variables& variables)
{
    UserFolders folders;
    folders.home = home;
    folders.protectedFolders = CleanCore::protectedFolders(home, PathText::join(home, ".config"));
    const auto configuration = variables("XDG_CONFIG_HOME");
    if (configuration && configuration->substr(0, 1) == "/") {
        for (std::string& folder : CleanCore::protectedFolders(home, *configuration)) {
            folders.protectedFolders.push_back(std::move(folder));
        }
    }
    const std::string cache =
        defaultFolder(PathText::join(home, ".cache"), Sticky::refused, folders);
    folders.cacheFolder =
        usable(variables("XDG_CACHE_HOME"), Sticky::refused, folders).value_or(cache);
    const auto temporary = usable(variables("TMPDIR"), Sticky::accepted, folders);
    folders.temporaryFolder =
        temporary ? *temporary : defaultFolder("/tmp", Sticky::accepted, folders);
    return folders;
}

UserFolders UserFolders::confinedTo(const std::string& home)
{
    UserFolders folders;
    folders.home = home;
    folders.protectedFolders = CleanCore::protectedFolders(home, PathText::join(home, ".config"));
    folders.cacheFolder = defaultFolder(PathText::join(home, ".cache"), Sticky::refused, folders);
    folders.temporaryFolder = defaultFolder(PathText::join(home, ".tmp"), Sticky::refused, folders);
    return folders;
}

} // namespace CleanCore
