#include "ZorvaneCLI/Output/CleanReport.h"

#include "Words/LeftInPlaceText.h"
#include "ZorvaneCLI/Output/PathJson.h"
#include "ZorvaneCLI/Output/ReclaimOutput.h"
#include "ZorvaneCLI/Output/TerminalText.h"

#include <algorithm>
#include <iostream>
#include <string>

namespace ZorvaneCLI {

using CleanCore::Clean;
using CleanCore::CleaningReport;

namespace {

void printSkipped(const CleaningReport& report)
{
    for (const Words::SkippedGroup& group : Words::skippedGroups(report)) {
        std::string title = group.title;
        title.replace(title.find("%1"), 2, std::to_string(group.items.size()));
        std::cout << title << "\n  " << group.detail << '\n';
        for (const CleaningReport::SkippedItem* item : group.items) {
            std::cout << "    " << escaped(item->path) << '\n';
        }
    }
    if (!report.skipped.empty()) {
        std::cout << "That's why the freed total is smaller than the estimate.\n";
    }
}

/// "Free space has grown by 33.6 MB", volume by volume if more than one has gained.
std::string growthText(const Clean::Outcome& outcome)
{
    const auto& growth = outcome.growth;
    std::string text = "Free space has grown by " + byteCount(growth.bytes());
    text += growth.isStillBeingFreed ? "; more is still being freed\n" : "\n";
    const auto hasGained = [](const CleanCore::VolumeGrowth& volume) { return volume.bytes > 0; };
    if (std::ranges::count_if(growth.volumes, hasGained) > 1) {
        for (const CleanCore::VolumeGrowth& volume : growth.volumes) {
            text += hasGained(volume) ? "  " + byteCount(volume.bytes) + "  on the disk of " +
                                            escaped(volume.folder) + '\n'
                                      : "";
        }
    }
    return text;
}

} // namespace

void printReport(const Clean::Outcome& outcome, bool dryRun)
{
    const CleaningReport& report = outcome.report;
    const CleanCore::Shortfall shortfall = outcome.shortfall();
    if (dryRun) {
        for (const CleaningReport::RemovedItem& item : report.removed) {
            std::cout << "  " << byteCount(item.bytes) << "  " << escaped(item.path) << '\n';
        }
        std::cout << byteCount(report.totalBytesFreed()) << " would be freed — "
                  << counted(report.removed.size(), "item") << " would be removed\n"
                  << reclaimText("Free space would grow by", outcome.removed);
    } else {
        std::cout << byteCount(report.totalBytesFreed()) << " freed — "
                  << counted(report.removed.size(), "item") << " removed\n"
                  << growthText(outcome) << shortfallText(report.totalBytesFreed(), shortfall);
    }
    printSkipped(report);
}

void printJsonReport(const Clean::Outcome& outcome, bool dryRun)
{
    nlohmann::ordered_json document;
    document["removed"] = nlohmann::ordered_json::array();
    for (const CleaningReport::RemovedItem& item : outcome.report.removed) {
        nlohmann::ordered_json json;
        setPath(json, item.path);
        json["bytes"] = item.bytes;
        document["removed"].push_back(std::move(json));
    }
    document["skipped"] = nlohmann::ordered_json::array();
    for (const CleaningReport::SkippedItem& item : outcome.report.skipped) {
        nlohmann::ordered_json json;
        setPath(json, item.path);
        json["reason"] = CleaningReport::name(item.reason);
        if (item.cause != CleaningReport::SkipCause::unknown) {
            json["cause"] = CleaningReport::name(item.cause);
        }
        document["skipped"].push_back(std::move(json));
    }
    document["totalBytesFreed"] = outcome.report.totalBytesFreed();
    document["visibleFreedBytes"] = outcome.growth.bytes();
    document["dryRun"] = dryRun;
    document["reclaim"] = reclaimJson(outcome.chosen);
    if (dryRun) {
        std::cout << document.dump(2) << '\n';
        return;
    }
    document["volumes"] = nlohmann::ordered_json::array();
    for (const CleanCore::VolumeGrowth& volume : outcome.growth.volumes) {
        nlohmann::ordered_json json;
        setPath(json, volume.folder);
        json["freedBytes"] = volume.bytes;
        document["volumes"].push_back(std::move(json));
    }
    document["stillBeingFreed"] = outcome.growth.isStillBeingFreed;
    if (const CleanCore::Shortfall shortfall = outcome.shortfall(); !shortfall.isEmpty()) {
        document["shortfall"] = {{"causes", causesJson(shortfall.causes)},
                                 {"unexplainedBytes", shortfall.unexplainedBytes}};
    }
    std::cout << document.dump(2) << '\n';
}

} // namespace ZorvaneCLI
