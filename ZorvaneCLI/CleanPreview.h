#pragma once

#include "CleanCore/Cleaning/CleaningSelection.h"
#include "CleanCore/Rules/TextTable.h"

#include <span>
#include <string>

namespace ZorvaneCLI {

/// Everything that a clean would remove, area by area, for a person to read before agreeing: each
/// item, the review-required areas with their warnings, and that removal is permanent.
[[nodiscard]] std::string previewText(std::span<const CleanCore::CleaningSelection> selections,
                                      const CleanCore::TextTable& texts);

} // namespace ZorvaneCLI
