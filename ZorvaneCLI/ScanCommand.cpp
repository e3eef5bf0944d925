#include "CleanCore/Cleaning/SelectionState.h"
#include "ZorvaneCLI/Commands.h"
#include "ZorvaneCLI/Output/ColumnTable.h"
#include "ZorvaneCLI/Output/PathJson.h"
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

void printJson(const Workspace& workspace, const SelectionState& selection)
{
    nlohmann::ordered_json document;
    setPath(document, workspace.environment.home, "home");
    document["categories"] = nlohmann::ordered_json::array();
    for (const CategoryResult& result : selection.results()) {
        nlohmann::ordered_json category;
        category["ruleId"] = result.rule.id;
        category["title"] = workspace.texts.ruleTitle(result.rule.id);
        category["tier"] = name(result.rule.tier);
        category["kind"] = name(result.rule.kind);
        category["totalBytes"] = result.totalBytes();
        category["hadAccessErrors"] = result.hadAccessErrors;
        category["items"] = nlohmann::ordered_json::array();
        for (const ScannedItem& item : result.items) {
            category["items"].push_back(
                itemJson(item, selection.isSelected(result.rule.id, item.path)));
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

void printAreas(const Workspace& workspace, const SelectionState& selection)
{
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
    if (emptyAreas > 0) {
        std::cout << "Not shown: " << counted(emptyAreas, "area")
                  << " where no space can be gained; --rule ID shows one\n";
    }
}

void printItems(const Workspace& workspace, const CategoryResult& result)
{
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
    for (const ScannedItem& item : result.items) {
        const bool isDated = item.modifiedAt != CleanCore::distantPast;
        table.add({"  " + byteCount(item.sizeBytes),
                   isDated ? formatTime(item.modifiedAt).substr(0, 10) : "", itemText(item)});
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
    const SelectionState selection(std::move(*results));
    if (options.common.json) {
        printJson(workspace, selection);
    } else if (options.common.ruleIds.empty()) {
        printAreas(workspace, selection);
    } else {
        for (const CategoryResult& result : selection.results()) {
            printItems(workspace, result);
        }
    }
    return std::ranges::all_of(selection.results(), isSeenWhole) ? ExitStatus::done
                                                                 : ExitStatus::incomplete;
}

} // namespace ZorvaneCLI
