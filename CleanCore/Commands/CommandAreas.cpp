#include "CleanCore/Commands/CommandAreas.h"

#include "CleanCore/Commands/Parsing/FlatpakOutput.h"
#include "CleanCore/Commands/Parsing/PodmanOutput.h"
#include "CleanCore/Commands/Parsing/ToolOutput.h"

#include <algorithm>
#include <array>

namespace CleanCore {

namespace {

using Arguments = CommandArea::Arguments;
using Clearing = CommandArea::Clearing;
using Credit = CommandArea::Credit;

} // namespace

std::span<const CommandArea> commandAreas()
{
    static const std::array areas = {
        CommandArea{
            .ruleId = "tm-local-snapshots",
            .tool = Tool::tmutil,
            .listings = {{"listlocalsnapshots", "/"}},
            .items = ToolOutput::timeMachineSnapshots,
            .clearing = Clearing::singleItems,
            .clearingArguments =
                [](const std::string& path) {
                    return Arguments{"deletelocalsnapshots", ToolOutput::snapshotStamp(path)};
                },
        },
        CommandArea{
            .ruleId = "dev-unavailable-simulators",
            .tool = Tool::xcrun,
            .listings = {{"simctl", "list", "devices", "unavailable", "-j"}},
            .items = ToolOutput::unavailableSimulators,
            .clearing = Clearing::wholeArea,
            .clearingArguments =
                [](const std::string&) {
                    return Arguments{"simctl", "delete", "unavailable"};
                },
        },
        CommandArea{
            .ruleId = "brew-cleanup",
            .tool = Tool::brew,
            .listings = {{"cleanup", "--dry-run", "-s"}},
            .items = ToolOutput::brewCleanup,
            .clearing = Clearing::wholeArea,
            .clearingArguments =
                [](const std::string&) {
                    return Arguments{"cleanup", "-s"};
                },
        },
        CommandArea{
            .ruleId = "docker-reclaimable",
            .tool = Tool::docker,
            .listings = {{"system", "df", "--format", "{{json .}}"}},
            .items = ToolOutput::dockerReclaimable,
        },
        // "uninstall --unused" lists only while it asks for consent, and would remove more than was
        // shown. Three plain listings tell which runtimes no app uses. The first covers all
        // installations, as an app of the system may run on a runtime of the user.
        CommandArea{
            .ruleId = "dev-flatpak-unused",
            .tool = Tool::flatpak,
            .listings = {{"list", "--app", "--columns=ref,runtime"},
                         {"list", "--user", "--runtime", "--all", "--columns=ref,size,runtime"},
                         {"pin", "--user"}},
            .items = FlatpakOutput::unusedRuntimes,
            .clearing = Clearing::singleItemsStillListed,
            .clearingArguments =
                [](const std::string& path) {
                    return Arguments{"uninstall", "--user", "--noninteractive", "--no-related",
                                     "runtime/" + path};
                },
            .credit = Credit::nothing,
        },
        // Only images without a name that no container uses: a stopped container may be a working
        // environment, somebody wants a named image, and a volume holds data. "--remote=false"
        // keeps the tool to this computer, whatever the environment says.
        CommandArea{
            .ruleId = "podman-reclaimable",
            .tool = Tool::podman,
            .listings = {{"--remote=false", "images", "--filter", "dangling=true", "--quiet",
                          "--no-trunc"},
                         {"--remote=false", "system", "df", "--verbose"}},
            .items = PodmanOutput::danglingImages,
            .clearing = Clearing::singleItemsStillListed,
            .clearingArguments =
                [](const std::string& path) {
                    return Arguments{"--remote=false", "image", "rm", PodmanOutput::imageId(path)};
                },
        },
    };
    return areas;
}

const CommandArea* commandArea(std::string_view ruleId)
{
    const std::span<const CommandArea> areas = commandAreas();
    const auto area = std::find_if(areas.begin(), areas.end(), [&](const CommandArea& candidate) {
        return candidate.ruleId == ruleId;
    });
    return area == areas.end() ? nullptr : &*area;
}

} // namespace CleanCore
