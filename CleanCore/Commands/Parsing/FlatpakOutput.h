#pragma once

#include "CleanCore/Scanning/ScannedItem.h"

#include <span>
#include <string>
#include <vector>

namespace CleanCore::FlatpakOutput {

/// The runtimes of the user's own installation that nothing needs, and their translations, one item
/// for each, "ID/ARCH/BRANCH" as path and the installed size.
///
/// `outputs`: the apps of all installations (reference, runtime), the user's runtimes (reference,
/// size, runtime) and the user's pins; lines of tab-separated cells in the C locale.
///
/// Chooses too little rather than too much: only platforms ("*.Platform") and their translations,
/// not development kits, and not extensions such as graphics drivers, whose users are not listed.
/// Pinned runtimes, of any branch, were installed on purpose and are left out. If one line of an
/// app cannot be parsed, there are no items at all.
[[nodiscard]] std::vector<ScannedItem> unusedRuntimes(std::span<const std::string> outputs);

} // namespace CleanCore::FlatpakOutput
