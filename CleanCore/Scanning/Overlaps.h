#pragma once

#include "CleanCore/Scanning/CategoryResult.h"

#include <span>
#include <stop_token>
#include <string>
#include <vector>

namespace CleanCore {

class FileManager;

/// Leaves every entry in one area only, so that nothing is offered, chosen or counted twice. Areas
/// overlap where a catalog does not keep them apart, or where variables or links lead two of them
/// to one folder.
///
/// An entry that several areas list stays in one that requires review rather than in a safe one;
/// among equals, in the one with the smallest id. An item that contains an item of another base is
/// left out as if it were excluded, because the area that looks inside knows its content better.
/// Items of tools are not entries of the file system and stay.
[[nodiscard]] std::vector<CategoryResult> withoutOverlaps(std::vector<CategoryResult> results,
                                                          const FileManager& fileManager);

/// Returns the other file-system rules of `all` that have a base at or inside a base of `rules`,
/// and so affect the entries that withoutOverlaps() leaves to `rules`. A scan of a part of the
/// areas has to include them to give the same results as a scan of all. After a stop request the
/// result is incomplete.
[[nodiscard]] std::vector<CleaningRule> rulesReachingInto(std::span<const CleaningRule> rules,
                                                          std::span<const CleaningRule> all,
                                                          const std::string& home,
                                                          const FileManager& fileManager,
                                                          const std::stop_token& stop);

} // namespace CleanCore
