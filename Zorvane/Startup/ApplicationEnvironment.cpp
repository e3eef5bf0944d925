#include "Zorvane/Startup/ApplicationEnvironment.h"

#include "CleanCore/CloudDrive/CloudDrive.h"
#include "CleanCore/Commands/Running/SystemCommandRunner.h"
#include "CleanCore/FileSystem/FileManager.h"
#include "CleanCore/Startup/CloudDrives.h"
#include "CleanCore/Startup/Startup.h"
#include "CleanCore/Support/PathText.h"
#include "Zorvane/Desktop/FileManagerReveal.h"
#include "Zorvane/Desktop/PermissionSettings.h"

#include <sys/stat.h>

namespace Zorvane {

namespace {

using CleanCore::HomeEnvironment;

namespace Startup = CleanCore::Startup;

} // namespace

Environment makeEnvironment(const ApplicationOptions& options)
{
    HomeEnvironment home = Startup::openHome(options.home);
    if (home.isConfined) {
        // Qt and the external tools expect the temporary folder to exist. If it cannot be made,
        // they report that themselves.
        ::mkdir(home.folders.temporaryFolder.c_str(), S_IRWXU);
    }
    if (options.mirror) {
        Startup::requireOtherHome(home, "--mirror");
    }
    const CleanCore::ToolLocations cloudTools = Startup::openCloudTools(options.tools, home);
    // The system's own root serves the cloud drives only.
    const CleanCore::ToolLocations tools = options.tools == "/"
                                               ? CleanCore::ToolLocations::none()
                                               : Startup::openTools(options.tools, home);
    const auto load = [file = options.catalog, home] {
        CleanCore::RulesCatalog catalog = Startup::openCatalog(file);
        Startup::requireHarmless(catalog, file, home);
        return catalog;
    };
    if (options.catalog) {
        // Refuses an unusable catalog before the window opens.
        [[maybe_unused]] const CleanCore::RulesCatalog catalog = load();
    }
    const QLocale locale = QLocale::system();
    auto cloudDrives = Startup::openCloudDrives(home, cloudTools, std::nullopt, options.mirror);
    return {
        .home = std::move(home),
        .cloudDrives = std::move(cloudDrives),
        .tools = tools,
        .commandRunner =
            [](std::stop_token stop) {
                return std::make_shared<CleanCore::SystemCommandRunner>(std::move(stop));
            },
        .loadCatalog = load,
        .texts = CleanCore::TextTable::loadBundled(locale.name().toStdString()),
        .locale = locale,
        .preferences = Preferences::ofUser(),
        .account = UserAccount::ofProcess(),
        .reveal = revealInFileManager,
        .openPermissionSettings = openPermissionSettings,
    };
}

} // namespace Zorvane
