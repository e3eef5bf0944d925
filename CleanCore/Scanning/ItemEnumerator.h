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

    /// Returns the entries directly inside `inBase`, largest first; entries of equal size keep the
    /// order in which they are listed. Leaves out names in `exclusions` (and canonically equivalent
    /// forms) and, unless `minAgeDays` is 0, entries whose newest change is less than `minAgeDays`
    /// days of 86,400 s before `now`. A base that does not exist has no entries; one that cannot be
    /// listed throws std::system_error. After a stop request the result is incomplete.
    [[nodiscard]] std::vector<ScannedItem> items(const std::string& inBase, std::int64_t minAgeDays,
                                                 std::span<const std::string> exclusions,
                                                 Timestamp now,
                                                 const std::stop_token& stop = {}) const;

private:
    std::shared_ptr<const FileManager> m_fileManager;
};

} // namespace CleanCore
