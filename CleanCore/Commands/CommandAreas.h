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
        /// One run clears the whole area.
        wholeArea,
        /// One run for each item.
        singleItems,
        /// One run for each item that the tool still lists immediately before.
        singleItemsStillListed,
    };

    /// The bytes that a removal counts as freed.
    enum class Credit {
        scannedSize,
        /// None: the sizes include data that other items share, which stays.
        nothing,
    };

    std::string_view ruleId;
    Tool tool;
    /// The runs that list the area; they change nothing and ask nothing. All must succeed.
    std::vector<Arguments> listings;
    /// Turns the outputs of the listings, in their order, into items. Accepts any text.
    std::vector<ScannedItem> (*items)(std::span<const std::string> outputs);
    Clearing clearing = Clearing::never;
    /// The run that clears the item of this path; wholeArea ignores the path.
    Arguments (*clearingArguments)(const std::string& path) = nullptr;
    Credit credit = Credit::scannedSize;
};

/// All known areas.
[[nodiscard]] std::span<const CommandArea> commandAreas();

/// The area of a rule, ids compared exactly; null if there is none.
[[nodiscard]] const CommandArea* commandArea(std::string_view ruleId);

} // namespace CleanCore
