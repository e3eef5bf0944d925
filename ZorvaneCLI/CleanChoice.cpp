#include "ZorvaneCLI/CleanChoice.h"

#include "CleanCore/Cleaning/SelectionState.h"

#include <algorithm>
#include <set>
#include <string>

namespace ZorvaneCLI {

using CleanCore::CategoryResult;
using CleanCore::CleaningSelection;
using CleanCore::ScannedItem;
using CleanCore::SelectionState;

namespace {

/// Selects exactly the named items.
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

} // namespace

void requireChoice(const CleanOptions& options)
{
    const bool namesAreas = !options.common.ruleIds.empty();
    const char* complaint = nullptr;
    if (options.safe && (namesAreas || options.all || !options.items.empty())) {
        complaint = "--safe takes the default selection and cannot be combined with --rule, --all "
                    "or --item";
    } else if (!options.safe && !namesAreas) {
        complaint = "nothing is selected; give --safe, or --rule ID with --all or --item PATH";
    } else if (namesAreas && options.all == !options.items.empty()) {
        complaint = "--rule needs either --all or --item PATH";
    } else if (std::find(options.items.begin(), options.items.end(), "") != options.items.end()) {
        complaint = "--item must not be empty";
    }
    if (complaint != nullptr) {
        throw CommandError(ExitStatus::wrongUsage, complaint);
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

} // namespace ZorvaneCLI
