#pragma once

#include "CleanCore/Scanning/ScannedItem.h"

#include <cstdint>
#include <memory>
#include <span>
#include <stop_token>
#include <string>
#include <vector>

namespace CleanCore {

class FileManager;

/// Lists and measures the entries of a base folder. Immutable; safe from many threads at once.
class ItemEnumerator
{
public:
    explicit ItemEnumerator(std::shared_ptr<const FileManager> fileManager);

    /// The entries directly inside `inBase`, largest first; entries of equal size keep the order in
    /// which they are listed. Left out are names in `exclusions` (canonically equivalent forms
    /// included) and, unless `minAgeDays` is 0, entries whose newest change is later than
    /// `minAgeDays` days of 86 400 s before `now`. A base that does not exist has no entries; one
    /// that cannot be listed throws std::system_error. After a stop request the result is
    /// incomplete.
    [[nodiscard]] std::vector<ScannedItem> items(const std::string& inBase, std::int64_t minAgeDays,
                                                 std::span<const std::string> exclusions,
                                                 Timestamp now,
                                                 const std::stop_token& stop = {}) const;

private:
    std::shared_ptr<const FileManager> m_fileManager;
};

} // namespace CleanCore
