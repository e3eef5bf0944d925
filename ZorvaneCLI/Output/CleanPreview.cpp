#include "ZorvaneCLI/Output/CleanPreview.h"

#include "CleanCore/Cleaning/SelectionReclaim.h"
#include "CleanCore/Support/SaturatingSum.h"
#include "ZorvaneCLI/Output/ColumnTable.h"
#include "ZorvaneCLI/Output/ReclaimOutput.h"
#include "ZorvaneCLI/Output/TerminalText.h"

#include <algorithm>

namespace ZorvaneCLI {

using CleanCore::CleaningSelection;
using CleanCore::RuleTier;
using CleanCore::ScannedItem;

namespace {

std::int64_t bytesOf(const CleaningSelection& selection)
{
    std::int64_t bytes = 0;
    for (const ScannedItem& item : selection.items) {
        bytes = CleanCore::saturatingSum(bytes, item.sizeBytes);
    }
    return bytes;
}

bool needsReview(const CleaningSelection& selection)
{
    return selection.rule.tier == RuleTier::reviewRequired;
}

std::string areaText(const CleaningSelection& selection, const CleanCore::TextTable& texts)
{
    using enum ColumnTable::Alignment;
    ColumnTable table({right, left});
    for (const ScannedItem& item : selection.items) {
        table.add({"  " + byteCount(item.sizeBytes), itemText(item)});
    }
    return escaped(texts.ruleTitle(selection.rule.id)) + ": " + byteCount(bytesOf(selection)) +
           ", " + counted(selection.items.size(), "item") +
           (needsReview(selection) ? " (review required)" : "") + '\n' + table.text() + '\n';
}

std::string warningsText(std::span<const CleaningSelection> selections,
                         const CleanCore::TextTable& texts)
{
    std::string text;
    for (const CleaningSelection& selection : selections) {
        if (needsReview(selection)) {
            const std::string warning = texts.textOrEmpty("category.warning." + selection.rule.id);
            text += "  " + escaped(texts.ruleTitle(selection.rule.id)) +
                    (warning.empty() ? "" : ": " + escaped(warning)) + '\n';
        }
    }
    return text.empty() ? text : "Review required; these may not be recoverable:\n" + text + '\n';
}

} // namespace

std::string previewText(std::span<const CleaningSelection> selections,
                        const CleanCore::TextTable& texts)
{
    std::string text;
    std::int64_t bytes = 0;
    std::size_t items = 0;
    for (const CleaningSelection& selection : selections) {
        text += areaText(selection, texts);
        bytes = CleanCore::saturatingSum(bytes, bytesOf(selection));
        items += selection.items.size();
    }
    text += warningsText(selections, texts);
    return text + "Total: " + byteCount(bytes) + ", " + counted(items, "item") + ".\n" +
           reclaimText("Free space will grow by", CleanCore::reclaimOf(selections)) +
           "Removal is permanent — files do not go to the Trash.\n";
}

} // namespace ZorvaneCLI
