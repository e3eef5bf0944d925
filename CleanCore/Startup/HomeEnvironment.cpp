#include "CleanCore/Startup/HomeEnvironment.h"

#include "CleanCore/CloudDrive/StandIn/StandInDrive.h"
#include "CleanCore/FileSystem/LinkResolver.h"
#include "CleanCore/FileSystem/LinuxFileManager.h"
#include "CleanCore/Reclaim/LinuxVolumeFacts.h"
#include "CleanCore/Reclaim/ReclaimSurvey.h"
#include "CleanCore/Startup/StartError.h"
#include "CleanCore/Support/PathText.h"
#include "CleanCore/Support/TaskPool.h"

#include <cstdlib>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

namespace CleanCore {

namespace {

std::optional<std::string> variable(const char* name)
{
    const char* const value = std::getenv(name);
    return value != nullptr && *value != '\0' ? std::optional<std::string>(value) : std::nullopt;
}

std::optional<std::string> accountHome()
{
    const passwd* const entry = ::getpwuid(::getuid());
    return entry != nullptr && entry->pw_dir != nullptr ? std::optional<std::string>(entry->pw_dir)
                                                        : std::nullopt;
}

std::string absolute(const std::string& path)
{
    const std::string result = absolutePath(path);
    if (result.substr(0, 1) != "/") {
        throw StartError(StartFault::homeMissing, path);
    }
    for (const std::string& part : PathText::components(result)) {
        // As text, ".." behind a link would name another folder.
        if (part == "..") {
            return resolveSymbolicLinks(result);
        }
    }
    return PathText::standardized(result);
}

void requireFolder(const std::string& home)
{
    struct stat status = {};
    if (home.find('\0') != std::string::npos || ::stat(home.c_str(), &status) != 0) {
        throw StartError(StartFault::homeMissing, home);
    }
    if (!S_ISDIR(status.st_mode)) {
        throw StartError(StartFault::homeNotAFolder, home);
    }
    if (::access(home.c_str(), R_OK | X_OK) != 0) {
        throw StartError(StartFault::homeUnreadable, home);
    }
}

/// Whether two paths lead to the same folder, also through a bind mount.
bool isSameFolder(const std::string& a, const std::string& b)
{
    struct stat first = {};
    struct stat second = {};
    return ::stat(a.c_str(), &first) == 0 && ::stat(b.c_str(), &second) == 0 &&
           first.st_dev == second.st_dev && first.st_ino == second.st_ino;
}

/// Whether the resolved path `home` is `folder` or lies inside it, also through a bind mount.
bool holds(const std::string& folder, std::string home)
{
    while (!isSameFolder(folder, home)) {
        if (home == "/") {
            return false;
        }
        home = PathText::parent(home);
    }
    return true;
}

void pointVariablesInto(const UserFolders& folders)
{
    const auto set = [](const char* name, const std::string& value) {
        ::setenv(name, value.c_str(), 1);
    };
    set("HOME", folders.home);
    set("TMPDIR", folders.temporaryFolder);
    set("XDG_CACHE_HOME", folders.cacheFolder);
    set("XDG_CONFIG_HOME", PathText::join(folders.home, ".config"));
    set("XDG_DATA_HOME", PathText::join(folders.home, ".local/share"));
    set("XDG_STATE_HOME", PathText::join(folders.home, ".local/state"));
}

} // namespace

HomeEnvironment HomeEnvironment::make(const std::optional<std::string>& requestedHome)
{
    const std::optional<std::string> account = accountHome();
    const std::optional<std::string> wanted = requestedHome ? requestedHome : variable("HOME");
    if (!wanted && !account) {
        throw StartError(StartFault::homeUnknown);
    }
    if (wanted && wanted->empty()) {
        throw StartError(StartFault::homeEmpty);
    }
    HomeEnvironment environment;
    environment.home = absolute(wanted ? *wanted : *account);
    requireFolder(environment.home);

    const std::string resolved = resolveSymbolicLinks(environment.home);
    const std::string resolvedAccount = account ? resolveSymbolicLinks(*account) : std::string();
    environment.isConfined =
        resolved != resolvedAccount && !isSameFolder(resolved, resolvedAccount);
    if (environment.isConfined && account &&
        (PathText::isSameOrInside(resolvedAccount, resolved) || holds(resolved, resolvedAccount))) {
        throw StartError(StartFault::homeHoldsAccount, environment.home);
    }
    if (environment.isConfined) {
        environment.folders = UserFolders::confinedTo(environment.home);
        pointVariablesInto(environment.folders);
    } else {
        environment.folders = UserFolders::ofAccount(environment.home, variable);
    }
    environment.pool = std::make_shared<TaskPool>();
    environment.fileManager = std::make_shared<LinuxFileManager>(
        environment.folders,
        environment.isConfined ? std::optional(environment.home) : std::nullopt, environment.pool);
    environment.volumeFacts = std::make_shared<LinuxVolumeFacts>();
    return environment;
}

std::shared_ptr<const ReclaimSurvey> HomeEnvironment::reclaimSurvey() const
{
    return std::make_shared<ReclaimSurvey>(fileManager, volumeFacts, pool);
}

std::string HomeEnvironment::cloudContainer() const
{
    return PathText::join(home, "Library/Mobile Documents/com~apple~CloudDocs");
}

std::shared_ptr<const CloudDrive>
HomeEnvironment::cloudDrive(const std::string& container,
                            const std::optional<std::string>& mirror) const
{
    return std::make_shared<StandInDrive>(isConfined ? std::optional(home) : std::nullopt,
                                          container, mirror);
}

} // namespace CleanCore
