#include "CleanCore/Startup/Startup.h"

#include "CleanCore/FileSystem/FileManager.h"
#include "CleanCore/Rules/CleanCoreError.h"
#include "CleanCore/Rules/ForeignCatalog.h"
#include "CleanCore/Startup/StartError.h"

#include <filesystem>
#include <nlohmann/json.hpp>
#include <system_error>

namespace CleanCore::Startup {

HomeEnvironment openHome(const std::optional<std::string>& home)
{
    return HomeEnvironment::make(home);
}

void requireOtherHome(const HomeEnvironment& home, const std::string& option)
{
    if (!home.isConfined) {
        throw StartError(StartFault::needsOtherHome, option);
    }
}

ToolLocations openTools(const std::optional<std::string>& root, const HomeEnvironment& home)
{
    if (!root) {
        return ToolLocations::forHome(home.isConfined, std::nullopt);
    }
    requireOtherHome(home, "--tools");
    std::error_code error;
    const auto folder = std::filesystem::canonical(*root, error);
    if (error || !std::filesystem::is_directory(folder)) {
        throw StartError(StartFault::toolsNotAFolder, *root);
    }
    if (!folder.has_relative_path()) {
        throw StartError(StartFault::toolsAtRoot, *root);
    }
    return ToolLocations::below(folder.native());
}

ToolLocations openCloudTools(const std::optional<std::string>& root, const HomeEnvironment& home)
{
    if (root != "/") {
        return openTools(root, home);
    }
    requireOtherHome(home, "--tools");
    return ToolLocations::ofSystem();
}

RulesCatalog openCatalog(const std::optional<std::string>& file)
{
    try {
        return file ? RulesCatalog::loadFile(*file) : RulesCatalog::loadBundled();
    } catch (const CleanCoreError& error) {
        throw error.kind() == CleanCoreError::Kind::rulesCatalogMissing
            ? StartError(StartFault::catalogMissing)
            : StartError(StartFault::catalogInvalid, file, error.reason());
    } catch (const std::system_error& error) {
        throw StartError(StartFault::catalogUnreadable, file, {}, error.code());
    } catch (const nlohmann::json::exception& error) {
        throw StartError(StartFault::catalogInvalid, file, error.what());
    }
}

void requireHarmless(const RulesCatalog& catalog, const std::optional<std::string>& file,
                     const HomeEnvironment& home)
{
    if (!file || home.isConfined) {
        return;
    }
    if (const auto base = refusedBase(catalog, home.home, *home.fileManager)) {
        throw StartError(StartFault::catalogTooBroad, *file, *base);
    }
}

} // namespace CleanCore::Startup
