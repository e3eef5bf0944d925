#include "CleanCore/Startup/Startup.h"

#include "CleanCore/FileSystem/FileManager.h"
#include "CleanCore/Rules/CleanCoreError.h"
#include "CleanCore/Rules/ForeignCatalog.h"
#include "CleanCore/Startup/StartError.h"

#include <filesystem>
#include <nlohmann/json.hpp>
#include <system_error>

namespace CleanCore::Startup {

namespace {

using enum StartError::Reason;

/// The JSON library's message without the "[json.exception.…] " in front.
std::string withoutCode(const std::string& message)
{
    const std::size_t end = message.find("] ");
    return message.starts_with('[') && end != std::string::npos ? message.substr(end + 2) : message;
}

} // namespace

HomeEnvironment openHome(const std::optional<std::string>& home)
{
    try {
        return HomeEnvironment::make(home);
    } catch (const HomeError& error) {
        throw StartError(wrongUsage, error.what());
    }
}

void requireOtherHome(const HomeEnvironment& home, const std::string& option)
{
    if (!home.isConfined) {
        throw StartError(wrongUsage,
                         option + " is for trying things out and needs another home (--home DIR)");
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
        throw StartError(wrongUsage, "--tools needs a folder, not " + *root);
    }
    try {
        return ToolLocations::below(folder.native());
    } catch (const std::invalid_argument& invalid) {
        throw StartError(wrongUsage, std::string("--tools: ") + invalid.what());
    }
}

RulesCatalog openCatalog(const std::optional<std::string>& file)
{
    const std::string name = file ? "the catalog " + *file : "the bundled catalog";
    try {
        return file ? RulesCatalog::loadFile(*file) : RulesCatalog::loadBundled();
    } catch (const CleanCoreError& error) {
        throw StartError(catalogUnusable,
                         error.kind() == CleanCoreError::Kind::rulesCatalogMissing
                             ? "the bundled catalog is missing; install Zorvane again"
                             : name + " is invalid: " + error.reason());
    } catch (const std::system_error& error) {
        throw StartError(catalogUnusable, name + " cannot be read: " +
                                              (error.code() == std::errc::invalid_argument
                                                   ? "it is no regular file"
                                                   : error.code().message()));
    } catch (const nlohmann::json::exception& error) {
        throw StartError(catalogUnusable, name + " is invalid: " + withoutCode(error.what()));
    }
}

void requireHarmless(const RulesCatalog& catalog, const std::optional<std::string>& file,
                     const HomeEnvironment& home)
{
    if (!file || home.isConfined) {
        return;
    }
    if (const auto base = refusedBase(catalog, home.home, *home.fileManager)) {
        throw StartError(catalogUnusable, "the catalog " + *file + " is refused: it would clean " +
                                              *base + ", which holds more than leftovers");
    }
}

} // namespace CleanCore::Startup
