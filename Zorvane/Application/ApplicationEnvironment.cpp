#include "Zorvane/Application/ApplicationEnvironment.h"

#include "CleanCore/Commands/SystemCommandRunner.h"
#include "CleanCore/Platform/CloudDrive.h"
#include "CleanCore/Platform/FileManager.h"
#include "CleanCore/Rules/CleanCoreError.h"
#include "CleanCore/Rules/ForeignCatalog.h"
#include "CleanCore/Support/PathText.h"
#include "Zorvane/Platform/FileManagerReveal.h"
#include "Zorvane/Platform/PermissionSettings.h"

#include <exception>
#include <filesystem>
#include <sys/stat.h>

namespace Zorvane {

namespace {

using CleanCore::HomeEnvironment;
using CleanCore::RulesCatalog;
using CleanCore::ToolLocations;

constexpr const char* cloudContainer = "Library/Mobile Documents/com~apple~CloudDocs";

HomeEnvironment openHome(const ApplicationOptions& options)
{
    try {
        return HomeEnvironment::make(options.home);
    } catch (const CleanCore::HomeError& error) {
        throw StartError(ExitStatus::wrongUsage, error.what());
    }
}

void requireOtherHome(const HomeEnvironment& home, const char* option)
{
    if (!home.isConfined) {
        throw StartError(ExitStatus::wrongUsage,
                         std::string(option) +
                             " is for trying things out and needs another home (--home DIR)");
    }
}

ToolLocations toolsFor(const ApplicationOptions& options, const HomeEnvironment& home)
{
    if (!options.tools) {
        return ToolLocations::forHome(home.isConfined, std::nullopt);
    }
    requireOtherHome(home, "--tools");
    std::error_code error;
    const auto root = std::filesystem::canonical(*options.tools, error);
    if (error || !std::filesystem::is_directory(root)) {
        throw StartError(ExitStatus::wrongUsage, "--tools needs a folder, not " + *options.tools);
    }
    try {
        return ToolLocations::below(root.native());
    } catch (const std::invalid_argument& invalid) {
        throw StartError(ExitStatus::wrongUsage, std::string("--tools: ") + invalid.what());
    }
}

/// Reads the catalog; throws when it cannot be used, also because it would offer more of the
/// account's own home than anyone means to clean.
RulesCatalog loadCatalog(const std::optional<std::string>& file, const std::string& home,
                         bool isConfined, const CleanCore::FileManager& fileManager)
{
    if (!file) {
        return RulesCatalog::loadBundled();
    }
    RulesCatalog catalog = RulesCatalog::loadFile(*file);
    if (!isConfined) {
        if (const auto base = CleanCore::refusedBase(catalog, home, fileManager)) {
            throw StartError(ExitStatus::catalogUnusable,
                             "the catalog " + *file + " is refused: it would clean " + *base +
                                 ", which holds more than leftovers");
        }
    }
    return catalog;
}

void requireUsable(const std::string& file, const std::function<RulesCatalog()>& load)
{
    const auto refuse = [&](const std::string& reason) {
        throw StartError(ExitStatus::catalogUnusable,
                         "the catalog " + file + " cannot be used: " + reason);
    };
    try {
        [[maybe_unused]] const RulesCatalog catalog = load();
    } catch (const StartError&) {
        throw;
    } catch (const CleanCore::CleanCoreError& error) {
        refuse(error.reason());
    } catch (const std::exception& error) {
        refuse(error.what());
    }
}

} // namespace

Environment makeEnvironment(const ApplicationOptions& options)
{
    HomeEnvironment home = openHome(options);
    if (home.isConfined) {
        // Qt, and the tools that are started, expect their temporary folder to be there. Where it
        // cannot be made they say so themselves.
        ::mkdir(home.folders.temporaryFolder.c_str(), S_IRWXU);
    }
    if (options.mirror) {
        requireOtherHome(home, "--mirror");
    }
    const ToolLocations tools = toolsFor(options, home);
    const auto load = [file = options.catalog, path = home.home, isConfined = home.isConfined,
                       fileManager = home.fileManager] {
        return loadCatalog(file, path, isConfined, *fileManager);
    };
    if (options.catalog) {
        requireUsable(*options.catalog, load);
    }
    const std::string container = CleanCore::PathText::join(home.home, cloudContainer);
    const QLocale locale = QLocale::system();
    auto cloudFileManager = home.fileManagerWith(home.cloudDrive(container, options.mirror));
    return {
        .home = std::move(home),
        .cloudFileManager = std::move(cloudFileManager),
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
