#pragma once

#include "CleanCore/Scanning/CategoryResult.h"

#include <span>
#include <stop_token>
#include <string>
#include <vector>

namespace CleanCore {

class FileManager;

/// The results with every entry in one place only, so that nothing is offered, chosen or counted
/// twice. Areas overlap where a catalog does not keep them apart, or where variables or links lead
/// two of them to one folder.
///
/// An entry that several areas list stays in one of them: in one that requires review before a safe
/// one, then in that with the least id. An item that holds an item of another base is left out, as
/// if it had been excluded: the area that looks inside knows more about what is there. Items of
/// tools are no entries and stay.
[[nodiscard]] std::vector<CategoryResult> withoutOverlaps(std::vector<CategoryResult> results,
                                                          const FileManager& fileManager);

/// The rules of `all` that have a say in what withoutOverlaps() leaves to `rules`, beside these
/// themselves: the file-system rules with a base at or inside one of theirs. Scanning them along
/// makes a part of the areas come out as it does in a scan of all. After a stop request the result
/// is incomplete.
[[nodiscard]] std::vector<CleaningRule> rulesReachingInto(std::span<const CleaningRule> rules,
                                                          std::span<const CleaningRule> all,
                                                          const std::string& home,
                                                          const FileManager& fileManager,
                                                          const std::stop_token& stop);

} // namespace CleanCore
