#include "CleanCore/Cleaning/ReclaimBook.h"
#include "CleanCore/Cleaning/SelectionState.h"
#include "ZorvaneCLI/Commands.h"
#include "ZorvaneCLI/Output/ColumnTable.h"
#include "ZorvaneCLI/Output/PathJson.h"
#include "ZorvaneCLI/Output/ReclaimOutput.h"
#include "ZorvaneCLI/Output/TerminalText.h"
#include "ZorvaneCLI/Output/TimeText.h"
#include "ZorvaneCLI/ScanRun.h"

#include <algorithm>
#include <iostream>
#include <numeric>

namespace ZorvaneCLI {

using CleanCore::CategoryResult;
using CleanCore::RuleTier;
using CleanCore::ScannedItem;
using CleanCore::SelectionState;

namespace {

std::int64_t totalBytes(const std::vector<CategoryResult>& results)
{
    return std::accumulate(results.begin(), results.end(), std::int64_t{0},
                           [](std::int64_t sum, const CategoryResult& result) {
                               return CleanCore::saturatingSum(sum, result.totalBytes());
                           });
}

bool isIncomplete(const ScannedItem& item)
{
    return item.obstacle == CleanCore::Obstacle::notSeenWhole;
}

bool isSeenWhole(const CategoryResult& result)
{
    return !result.hadAccessErrors && std::ranges::none_of(result.items, isIncomplete);
}

/// The results and, with --reclaim, how much free space their removal brings.
struct Findings
{
    SelectionState selection;
    std::optional<CleanCore::ReclaimBook> reclaim;

    [[nodiscard]] std::optional<CleanCore::Reclaim> ofItem(std::size_t category,
                                                           std::size_t item) const
    {
        return reclaim ? reclaim->ofItem(selection, category, item) : std::nullopt;
    }
};

CleanCore::ReclaimBook examineAll(SelectionState selection, const Workspace& workspace,
                                  const std::stop_token& stop)
{
    for (std::size_t category = 0; category < selection.results().size(); ++category) {
        selection.setWhollySelected(category, true);
    }
    CleanCore::ReclaimBook book;
    book.examine(selection, *workspace.environment.reclaimSurvey(), stop);
    return book;
}

nlohmann::ordered_json itemJson(const ScannedItem& item, bool isSelected)
{
    nlohmann::ordered_json json;
    setPath(json, item.path);
    json["sizeBytes"] = item.sizeBytes;
    json["modifiedAt"] = nullptr;
    if (item.modifiedAt != CleanCore::distantPast) {
        json["modifiedAt"] = formatTime(item.modifiedAt);
    }
    json["selected"] = isSelected;
    if (isIncomplete(item)) {
        json["incomplete"] = true;
    }
    return json;
}

void printJson(const Workspace& workspace, const Findings& findings)
{
    const SelectionState& selection = findings.selection;
    nlohmann::ordered_json document;
    setPath(document, workspace.environment.home, "home");
    document["categories"] = nlohmann::ordered_json::array();
    for (std::size_t index = 0; index < selection.results().size(); ++index) {
        const CategoryResult& result = selection.results()[index];
        nlohmann::ordered_json category;
        category["ruleId"] = result.rule.id;
        category["title"] = workspace.texts.ruleTitle(result.rule.id);
        category["tier"] = name(result.rule.tier);
        category["kind"] = name(result.rule.kind);
        category["totalBytes"] = result.totalBytes();
        category["hadAccessErrors"] = result.hadAccessErrors;
        category["items"] = nlohmann::ordered_json::array();
        for (std::size_t i = 0; i < result.items.size(); ++i) {
            category["items"].push_back(itemJson(result.items[i], selection.isSelected(index, i)));
            if (const auto reclaim = findings.ofItem(index, i)) {
                category["items"].back()["reclaim"] = reclaimJson(*reclaim);
            }
        }
        for (const CleanCore::ReachedEntry& entry : result.reachedEntries) {
            nlohmann::ordered_json json;
            setPath(json, entry.path);
            json["ruleId"] = entry.ruleId;
            category["reachedEntries"].push_back(std::move(json));
        }
        document["categories"].push_back(std::move(category));
    }
    document["totalBytes"] = totalBytes(selection.results());
    document["selectedBytes"] = selection.selectedBytes();
    if (findings.reclaim) {
        document["reclaim"] = reclaimJson(findings.reclaim->ofSelection(selection));
    }
    std::cout << document.dump(2) << '\n';
}

std::string note(const CategoryResult& result)
{
    std::string text = result.rule.tier == RuleTier::reviewRequired ? "review required" : "";
    if (result.hadAccessErrors) {
        text += text.empty() ? "" : ", ";
        text += "partly unreadable";
    }
    if (!result.reachedEntries.empty()) {
        text += text.empty() ? "" : ", ";
        text += counted(result.reachedEntries.size(), "item") + " left to other areas";
    }
    if (const auto count = std::ranges::count_if(result.items, isIncomplete); count > 0) {
        text += text.empty() ? "" : ", ";
        text += counted(static_cast<std::size_t>(count), "item") + " not seen whole";
    }
    return text;
}

void printAreas(const Workspace& workspace, const Findings& findings)
{
    const SelectionState& selection = findings.selection;
    using enum ColumnTable::Alignment;
    ColumnTable table({left, right, right, left, left});
    table.add({"AREA", "SIZE", "ITEMS", "ID", ""});
    std::size_t items = 0;
    std::size_t emptyAreas = 0;
    for (const CategoryResult& result : selection.results()) {
        items += result.items.size();
        if (result.totalBytes() == 0 && isSeenWhole(result) && result.reachedEntries.empty()) {
            ++emptyAreas;
            continue;
        }
        table.add({escaped(workspace.texts.ruleTitle(result.rule.id)),
                   byteCount(result.totalBytes()), std::to_string(result.items.size()),
                   escaped(result.rule.id), note(result)});
    }
    table.add({"Total", byteCount(totalBytes(selection.results())), std::to_string(items)});
    table.add({"Selected by default", byteCount(selection.selectedBytes())});
    std::cout << table.text();
    if (findings.reclaim) {
        std::cout << reclaimText("With that, free space will grow by",
                                 findings.reclaim->ofSelection(selection));
    }
    if (emptyAreas > 0) {
        std::cout << "Not shown: " << counted(emptyAreas, "area")
                  << " where no space can be gained; --rule ID shows one\n";
    }
}

void printItems(const Workspace& workspace, const Findings& findings, std::size_t category)
{
    const CategoryResult& result = findings.selection.results()[category];
    using enum ColumnTable::Alignment;
    std::cout << escaped(workspace.texts.ruleTitle(result.rule.id)) << "  "
              << byteCount(result.totalBytes()) << ", " << counted(result.items.size(), "item");
    const std::string remark = note(result);
    std::cout << (remark.empty() ? "" : " (" + remark + ")") << '\n';
    for (const char* key : {"category.explanation.", "category.warning."}) {
        const std::string text = workspace.texts.textOrEmpty(key + result.rule.id);
        std::cout << (text.empty() ? "" : "  " + escaped(text) + "\n");
    }
    ColumnTable table({right, left, left});
    for (std::size_t i = 0; i < result.items.size(); ++i) {
        const ScannedItem& item = result.items[i];
        const bool isDated = item.modifiedAt != CleanCore::distantPast;
        table.add({"  " + byteCount(item.sizeBytes),
                   isDated ? formatTime(item.modifiedAt).substr(0, 10) : "",
                   itemText(item) + gainRemark(findings.ofItem(category, i), item.sizeBytes)});
    }
    std::cout << table.text();
    for (const CleanCore::ReachedEntry& entry : result.reachedEntries) {
        std::cout << "  not listed here: " << escaped(entry.path) << ", which holds items of "
                  << escaped(workspace.texts.ruleTitle(entry.ruleId)) << " ("
                  << escaped(entry.ruleId) << ")\n";
    }
    std::cout << '\n';
}

} // namespace

ExitStatus scan(const ScanOptions& options, const Interruption& interruption)
{
    const Workspace workspace = openWorkspace(options.common);
    auto results =
        runScan(workspace, options.withoutCommands ? ToolAreas::leftOut : ToolAreas::included,
                interruption);
    if (!results) {
        std::cerr << "zorvane-cli: interrupted\n";
        return ExitStatus::interrupted;
    }
    Findings findings{SelectionState(std::move(*results)), std::nullopt};
    if (options.reclaim) {
        findings.reclaim = examineAll(findings.selection, workspace, interruption.token());
    }
    if (interruption.happened()) {
        std::cerr << "zorvane-cli: interrupted\n";
        return ExitStatus::interrupted;
    }
    if (options.common.json) {
        printJson(workspace, findings);
    } else if (options.common.ruleIds.empty()) {
        printAreas(workspace, findings);
    } else {
        for (std::size_t category = 0; category < findings.selection.results().size(); ++category) {
            printItems(workspace, findings, category);
        }
    }
    return std::ranges::all_of(findings.selection.results(), isSeenWhole) ? ExitStatus::done
                                                                          : ExitStatus::incomplete;
}

} // namespace ZorvaneCLI
