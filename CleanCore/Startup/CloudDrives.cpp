#include "CleanCore/Startup/CloudDrives.h"

#include "CleanCore/CloudDrive/CloudDrive.h"
#include "CleanCore/CloudDrive/GitAnnex/GitAnnexDrive.h"
#include "CleanCore/CloudDrive/SyncClient/SyncClientDrive.h"
#include "CleanCore/Support/PathText.h"

#include <algorithm>
#include <cstdlib>
#include <strings.h>
#include <unistd.h>
#include <utility>

namespace CleanCore::Startup {

namespace {

/// Where the user's programs have their sockets.
std::string runtimeFolder()
{
    const char* const folder = std::getenv("XDG_RUNTIME_DIR");
    return folder != nullptr && *folder == '/' ? folder : "/run/user/" + std::to_string(::getuid());
}

} // namespace

CloudDrives openCloudDrives(const HomeEnvironment& home, const ToolLocations& tools,
                            const std::optional<std::string>& container,
                            const std::optional<std::string>& mirror)
{
    CloudDrives drives = {home.cloudDrive(container.value_or(home.cloudContainer()), mirror)};
    drives.push_back(std::make_shared<GitAnnexDrive>(
        GitAnnexDrive::Place{
            home.home,
            home.isConfined,
            {home.folders.cacheFolder, home.folders.temporaryFolder, home.cloudContainer()}},
        tools.paths(Tool::gitAnnex)));
    for (const auto& [name, suffix] :
         {std::pair("Nextcloud", ".nextcloud"), {"ownCloud", ".owncloud"}, {"OpenCloud", ""}}) {
        drives.push_back(std::make_shared<SyncClientDrive>(
            SyncClientDrive::Client{name, PathText::join(runtimeFolder(), name), suffix,
                                    home.isConfined ? home.home : ""},
            SyncClientDrive::Limits{}));
    }
    return drives;
}

std::shared_ptr<const CloudDrive> driveNamed(std::string_view name, const CloudDrives& drives)
{
    const std::string wanted(name);
    const auto found = std::ranges::find_if(drives, [&](const auto& drive) {
        return ::strcasecmp(drive->name().c_str(), wanted.c_str()) == 0;
    });
    return found == drives.end() ? nullptr : *found;
}

} // namespace CleanCore::Startup
