#include "CleanCore/Startup/CloudDrives.h"

#include "CleanCore/CloudDrive/CloudDrive.h"
#include "CleanCore/CloudDrive/GitAnnex/GitAnnexDrive.h"

#include <algorithm>
#include <strings.h>

namespace CleanCore::Startup {

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
