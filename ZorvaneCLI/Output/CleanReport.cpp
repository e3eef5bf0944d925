#include "ZorvaneCLI/Output/CleanReport.h"

#include "Words/LeftInPlaceText.h"
#include "ZorvaneCLI/Output/PathJson.h"
#include "ZorvaneCLI/Output/TerminalText.h"

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

} // namespace

void printReport(const Clean::Outcome& outcome, bool dryRun)
{
    const CleaningReport& report = outcome.report;
    if (dryRun) {
        for (const CleaningReport::RemovedItem& item : report.removed) {
            std::cout << "  " << byteCount(item.bytes) << "  " << escaped(item.path) << '\n';
        }
        std::cout << byteCount(report.totalBytesFreed()) << " would be freed — "
                  << counted(report.removed.size(), "item") << " would be removed\n";
    } else {
        std::cout << byteCount(report.totalBytesFreed()) << " freed — "
                  << counted(report.removed.size(), "item") << " removed\n"
                  << "Free space has grown by " << byteCount(outcome.visibleFreedBytes) << '\n';
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
    document["visibleFreedBytes"] = outcome.visibleFreedBytes;
    document["dryRun"] = dryRun;
    std::cout << document.dump(2) << '\n';
}

} // namespace ZorvaneCLI
