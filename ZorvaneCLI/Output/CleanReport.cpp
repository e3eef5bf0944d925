#include "ZorvaneCLI/Output/CleanReport.h"

#include "ZorvaneCLI/Output/PathJson.h"
#include "ZorvaneCLI/Output/TerminalText.h"

#include <algorithm>
#include <iostream>

namespace ZorvaneCLI {

using CleanCore::Clean;
using CleanCore::CleaningReport;

namespace {

void printSkipped(const CleaningReport& report, CleaningReport::SkipReason reason,
                  const char* title, const char* detail)
{
    const auto count = std::count_if(
        report.skipped.begin(), report.skipped.end(),
        [&](const CleaningReport::SkippedItem& item) { return item.reason == reason; });
    if (count == 0) {
        return;
    }
    std::cout << count << ' ' << title << '\n' << "  " << detail << '\n';
    for (const CleaningReport::SkippedItem& item : report.skipped) {
        if (item.reason == reason) {
            std::cout << "    " << escaped(item.path) << '\n';
        }
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
    using enum CleaningReport::SkipReason;
    printSkipped(report, removalFailed, "in use by an open app",
                 "They were being written to right now. Close the app and run Zorvane again to "
                 "clear them.");
    printSkipped(report, blockedBySafetyGuard, "protected by Zorvane",
                 "They pointed into personal areas (like Documents or Photos). Zorvane refused to "
                 "touch them.");
    if (!report.skipped.empty()) {
        std::cout << "That's why the freed total is smaller than the estimate.\n";
    }
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
        document["skipped"].push_back(std::move(json));
    }
    document["totalBytesFreed"] = outcome.report.totalBytesFreed();
    document["visibleFreedBytes"] = outcome.visibleFreedBytes;
    document["dryRun"] = dryRun;
    std::cout << document.dump(2) << '\n';
}

} // namespace ZorvaneCLI
