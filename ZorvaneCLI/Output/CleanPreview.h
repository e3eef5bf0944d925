#pragma once

#include "CleanCore/Cleaning/CleaningSelection.h"
#include "CleanCore/Rules/TextTable.h"

#include <span>
#include <string>

namespace ZorvaneCLI {

/// The text that a person reads before agreeing to a clean: every item by area, the warnings of the
/// areas that require review, the total, and a reminder that removal is permanent.
[[nodiscard]] std::string previewText(std::span<const CleanCore::CleaningSelection> selections,
                                      const CleanCore::TextTable& texts);

} // namespace ZorvaneCLI
