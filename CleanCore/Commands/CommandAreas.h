#pragma once

#include "CleanCore/Commands/Running/ToolLocations.h"
#include "CleanCore/Scanning/ScannedItem.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace CleanCore {

/// One area that only a tool can measure and clean: a row of the table that the command engines
/// work by. The area's rule in the catalog has the same id.
struct CommandArea
{
    using Arguments = std::vector<std::string>;

    enum class Clearing {
        /// The area is only shown.
        never,
        /// One run clears everything, whatever was chosen.
        wholeArea,
        /// One run for each item.
        singleItems,
        /// The same, for items that the tool still lists right before.
        singleItemsStillListed,
    };

    /// What a removal is credited with.
    enum class Credit {
        scannedSize,
        /// Nothing: the tool's sizes count what other items share and what therefore stays.
        nothing,
    };

    std::string_view ruleId;
    Tool tool;
    /// The runs that list the area; they change nothing and ask nothing. All must succeed.
    std::vector<Arguments> listings;
    /// Makes items of what the runs printed, one text for each. Takes any text.
    std::vector<ScannedItem> (*items)(std::span<const std::string> outputs);
    Clearing clearing = Clearing::never;
    /// The run that clears the item of this path; the path counts for nothing with wholeArea.
    Arguments (*clearingArguments)(const std::string& path) = nullptr;
    Credit credit = Credit::scannedSize;
};

/// All areas that are known.
[[nodiscard]] std::span<const CommandArea> commandAreas();

/// The area of a rule, ids compared exactly; null where there is none.
[[nodiscard]] const CommandArea* commandArea(std::string_view ruleId);

} // namespace CleanCore
