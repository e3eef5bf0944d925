#include "CleanCore/Cleaning/Clean.h"
#include "CleanCore/Cleaning/SelectionState.h"
#include "CleanCore/Commands/CommandCleanEngine.h"
#include "CleanCore/Commands/Running/SystemCommandRunner.h"
#include "ZorvaneCLI/CleanPreview.h"
#include "ZorvaneCLI/Commands.h"
#include "ZorvaneCLI/PathJson.h"
#include "ZorvaneCLI/ScanRun.h"
#include "ZorvaneCLI/TerminalText.h"

#include <algorithm>
#include <functional>
#include <iostream>
#include <memory>
#include <set>
#include <unistd.h>

namespace ZorvaneCLI {

using CleanCore::CategoryResult;
using CleanCore::CleaningReport;
using CleanCore::CleaningSelection;
using CleanCore::RuleKind;
using CleanCore::RuleTier;
using CleanCore::ScannedItem;
using CleanCore::SelectionState;

namespace {

/// A finished clean, as it is told.
struct Outcome
{
    CleaningReport report;
    // Growth of the volume's free space; never negative.
    std::int64_t visibleFreedBytes = 0;
    bool isDryRun = false;
};

void requireSelection(const CleanOptions& options)
{
    const bool namesAreas = !options.common.ruleIds.empty();
    const char* complaint = nullptr;
    if (options.safe && (namesAreas || options.all || !options.items.empty())) {
        complaint = "--safe takes the default selection and goes with no other";
    } else if (!options.safe && !namesAreas) {
        complaint = "nothing is selected; name --safe, or --rule ID with --all or --item PATH";
    } else if (namesAreas && options.all == !options.items.empty()) {
        complaint = "--rule needs either --all or --item PATH";
    } else if (std::find(options.items.begin(), options.items.end(), "") != options.items.end()) {
        complaint = "--item must not be empty";
    }
    if (complaint != nullptr) {
        throw CommandError(ExitStatus::wrongUsage, complaint);
    }
}

/// Selects exactly the named items; each must be one that the scan lists. An area that its tool
/// clears only as a whole has to be named whole.
void selectItems(const std::set<std::string>& paths, SelectionState& selection)
{
    std::set<std::string> unlisted = paths;
    for (const CategoryResult& result : selection.results()) {
        std::size_t named = 0;
        for (const ScannedItem& item : result.items) {
            if (!paths.contains(item.path)) {
                continue;
            }
            ++named;
            unlisted.erase(item.path);
            if (!selection.isSelected(result.rule.id, item.path)) {
                selection.toggle(result.rule.id, item.path);
            }
        }
        if (result.isClearedAsWhole && named != 0 && named != result.items.size()) {
            throw CommandError(ExitStatus::wrongUsage,
                               result.rule.id + " is cleared as a whole; name it with --all");
        }
    }
    if (!unlisted.empty()) {
        throw CommandError(ExitStatus::wrongUsage,
                           "the scan lists no item " + *unlisted.begin() + " in the named areas");
    }
}

std::vector<CleaningSelection> choose(const CleanOptions& options,
                                      std::vector<CategoryResult> results)
{
    SelectionState selection(std::move(results));
    if (options.safe) {
        return selection.selections();
    }
    selection.deselectAll();
    if (options.all) {
        for (const CategoryResult& result : selection.results()) {
            selection.selectAll(result.rule.id);
        }
    } else {
        selectItems({options.items.begin(), options.items.end()}, selection);
    }
    return selection.selections();
}

/// Shows what will go and waits for "yes". Both take a terminal: nobody agrees to a list that went
/// into a file.
void askForConsent(std::span<const CleaningSelection> selections, const Workspace& workspace,
                   const Interruption& interruption)
{
    const bool isShownByErrors = ::isatty(STDERR_FILENO) == 1;
    if (::isatty(STDIN_FILENO) != 1 || (!isShownByErrors && ::isatty(STDOUT_FILENO) != 1)) {
        throw CommandError(ExitStatus::refused,
                           "there is no terminal to ask on; nothing was removed (--yes agrees)");
    }
    (isShownByErrors ? std::cerr : std::cout)
        << previewText(selections, workspace.texts) << "Type \"yes\" to remove: " << std::flush;
    if (interruption.readLine() == "yes") {
        return;
    }
    if (interruption.happened()) {
        throw CommandError(ExitStatus::interrupted, "interrupted; nothing was removed");
    }
    throw CommandError(ExitStatus::refused, "nothing was removed");
}

Outcome remove(std::vector<CleaningSelection> selections, const Workspace& workspace, bool dryRun,
               const Interruption& interruption)
{
    const CleanCore::HomeEnvironment& environment = workspace.environment;
    const CleanCore::CommandCleanEngine tools(std::make_shared<CleanCore::SystemCommandRunner>(),
                                              workspace.tools);
    const CleanCore::Clean clean(environment.home, environment.fileManager,
                                 environment.folders.protectedFolders,
                                 std::bind_front(&CleanCore::CommandCleanEngine::run, tools));
    auto [report, freed] = clean.run(std::move(selections), dryRun, interruption.token());
    return {std::move(report), freed, dryRun};
}

void printJson(const Outcome& outcome)
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
    document["dryRun"] = outcome.isDryRun;
    std::cout << document.dump(2) << '\n';
}

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

void printReport(const Outcome& outcome)
{
    const CleaningReport& report = outcome.report;
    if (outcome.isDryRun) {
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

} // namespace

ExitStatus clean(const CleanOptions& options, const Interruption& interruption)
{
    requireSelection(options);
    Workspace workspace = openWorkspace(options.common);
    if (options.safe) {
        std::erase_if(workspace.rules, [](const CleanCore::CleaningRule& rule) {
            return rule.tier != RuleTier::safe || rule.kind != RuleKind::fileSystem;
        });
    }
    auto results = runScan(workspace, ToolAreas::included, interruption);
    if (!results) {
        throw CommandError(ExitStatus::interrupted, "interrupted; nothing was removed");
    }
    const bool wasUnreadable =
        std::any_of(results->begin(), results->end(),
                    [](const CategoryResult& result) { return result.hadAccessErrors; });
    if (wasUnreadable) {
        std::cerr << "zorvane-cli: some areas could not be read; zorvane-cli scan tells which\n";
    }
    const std::vector<CleaningSelection> selections = choose(options, std::move(*results));
    if (!options.yes && !options.dryRun && !selections.empty()) {
        askForConsent(selections, workspace, interruption);
    }
    const Outcome outcome = remove(selections, workspace, options.dryRun, interruption);
    options.common.json ? printJson(outcome) : printReport(outcome);
    if (interruption.happened()) {
        std::cerr << "zorvane-cli: interrupted; what was begun is finished, the rest is left\n";
        return ExitStatus::interrupted;
    }
    return outcome.report.skipped.empty() && !wasUnreadable ? ExitStatus::done
                                                            : ExitStatus::incomplete;
}

} // namespace ZorvaneCLI
