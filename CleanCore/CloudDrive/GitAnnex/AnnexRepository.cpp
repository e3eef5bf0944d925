#include "CleanCore/CloudDrive/GitAnnex/AnnexRepository.h"

#include "CleanCore/CloudDrive/GitAnnex/GitConfig.h"
#include "CleanCore/FileSystem/LinkResolver.h"
#include "CleanCore/Support/PathText.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>

namespace CleanCore {

namespace {

/// Links do not count: the content of a linked worktree lies with another repository.
bool isOwnFolder(const std::string& path)
{
    struct stat status = {};
    return ::lstat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode) &&
           status.st_uid == ::getuid();
}

template <std::size_t count>
bool isOneOf(std::string_view name, const std::array<std::string_view, count>& names)
{
    return std::ranges::find(names, name) != names.end();
}

/// Whether a setting can lead nowhere, whatever its value.
bool isHarmless(const GitSetting& setting)
{
    static constexpr std::array<std::string_view, 9> core = {"repositoryformatversion",
                                                             "filemode",
                                                             "bare",
                                                             "logallrefupdates",
                                                             "symlinks",
                                                             "ignorecase",
                                                             "autocrlf",
                                                             "safecrlf",
                                                             "quotepath"};
    static constexpr std::array<std::string_view, 6> annex = {
        "uuid", "version", "thin", "numcopies", "crippledfilesystem", "backend"};
    static constexpr std::array<std::string_view, 10> remote = {
        "fetch",        "tagopt",     "prune",      "skipfetchall", "annex-uuid",
        "annex-ignore", "annex-sync", "annex-cost", "annex-pull",   "annex-push"};
    // What git-annex puts there itself.
    static constexpr std::array<std::string_view, 3> filter = {
        "git-annex smudge -- %f", "git-annex smudge --clean -- %f", "git-annex filter-process"};
    if (setting.section == "core") {
        return isOneOf(setting.name, core);
    }
    if (setting.section == "annex") {
        return isOneOf(setting.name, annex);
    }
    if (setting.section == "remote") {
        return isOneOf(setting.name, remote);
    }
    if (setting.section == "filter") {
        return isOneOf(setting.value, filter);
    }
    static constexpr std::array<std::string_view, 8> sections = {
        "user", "branch", "gc", "init", "color", "pull", "advice", "safe"};
    return isOneOf(setting.section, sections);
}

bool namesFolder(const GitSetting& setting)
{
    static constexpr std::array<std::string_view, 3> names = {"url", "pushurl", "annex-directory"};
    return setting.section == "remote" && isOneOf(setting.name, names);
}

std::string nameOf(const GitSetting& setting)
{
    return setting.section + (setting.subsection.empty() ? "" : "." + setting.subsection) + "." +
           setting.name;
}

/// Whether `value`, seen from the repository, is a folder inside the home.
bool isInside(const std::string& value, const std::string& repository, const std::string& home)
{
    // git takes a name with a colon for a computer's.
    if (value.empty() || value.find(':') != std::string::npos || value.front() == '~') {
        return false;
    }
    const std::string path = value.front() == '/' ? value : PathText::join(repository, value);
    return PathText::isSameOrInside(resolveSymbolicLinks(path), resolveSymbolicLinks(home));
}

} // namespace

bool isAnnexRepository(const std::string& path)
{
    const std::string git = PathText::join(path, ".git");
    if (!isOwnFolder(path) || !isOwnFolder(git) || !isOwnFolder(PathText::join(git, "annex"))) {
        return false;
    }
    const auto settings = readGitConfig(PathText::join(git, "config"));
    return settings && std::ranges::any_of(*settings, [](const GitSetting& setting) {
               return setting.section == "annex" && setting.subsection.empty() &&
                      setting.name == "uuid" && !setting.value.empty();
           });
}

std::optional<CloudFailure> leadsOutside(const std::string& path, const std::string& home)
{
    const auto failure = [](std::string detail) {
        return CloudFailure{CloudRefusalReason::leadsOutside, 0, std::move(detail)};
    };
    const std::string git = PathText::join(path, ".git");
    for (const std::string& file :
         {PathText::join(git, "config"), PathText::join(home, ".gitconfig"),
          PathText::join(home, ".config/git/config")}) {
        struct stat status = {};
        if (::lstat(file.c_str(), &status) != 0 && errno == ENOENT) {
            continue;
        }
        const auto settings = readGitConfig(file);
        if (!settings) {
            return failure(file);
        }
        const auto leading = std::ranges::find_if(*settings, [&](const GitSetting& setting) {
            return !(namesFolder(setting) ? isInside(setting.value, path, home)
                                          : isHarmless(setting));
        });
        if (leading != settings->end()) {
            return failure(nameOf(*leading));
        }
    }
    for (const char* const name :
         {"commondir", "config.worktree", "objects/info/alternates", "annex/objects"}) {
        const std::string entry = PathText::join(git, name);
        struct stat status = {};
        const bool isThere = ::lstat(entry.c_str(), &status) == 0;
        if (isThere && !(std::string_view(name) == "annex/objects" && S_ISDIR(status.st_mode))) {
            return failure(name);
        }
    }
    return std::nullopt;
}

} // namespace CleanCore
