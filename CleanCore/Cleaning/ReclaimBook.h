#pragma once

#include "CleanCore/Cleaning/CleaningSelection.h"
#include "CleanCore/Cleaning/SelectionState.h"
#include "CleanCore/Reclaim/Reclaim.h"
#include "CleanCore/Reclaim/ReclaimFindings.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <stop_token>
#include <vector>

namespace CleanCore {

class ReclaimSurvey;

/// The findings about the space of the items of one scan, kept while the choice among them changes.
/// A value that is cheap to copy. `selection` is always one of the same results.
class ReclaimBook
{
public:
    /// Examines the chosen items that were not examined yet. Blocks; after a stop request some
    /// still are not. Returns whether any was.
    bool examine(const SelectionState& selection, const ReclaimSurvey& survey,
                 const std::stop_token& stop);

    /// How much free space the removal of the chosen items brings.
    [[nodiscard]] Reclaim ofSelection(const SelectionState& selection) const;

    /// The same for one item alone; nothing if it was not examined.
    [[nodiscard]] std::optional<Reclaim> ofItem(const SelectionState& selection,
                                                std::size_t category, std::size_t item) const;

    /// The selection's items by rule, with their findings.
    [[nodiscard]] std::vector<CleaningSelection> selections(const SelectionState& selection) const;

private:
    [[nodiscard]] ReclaimFindings findings(std::size_t category, std::size_t item) const;

    /// By category; null or short where nothing was examined.
    std::vector<std::shared_ptr<const std::vector<ReclaimFindings>>> m_findings;
};

} // namespace CleanCore
