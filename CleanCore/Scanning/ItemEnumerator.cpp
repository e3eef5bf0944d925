#include "CleanCore/Scanning/ItemEnumerator.h"

#include "CleanCore/FileSystem/FileManager.h"
#include "CleanCore/Support/PathText.h"
#include "CleanCore/Support/TextEquality.h"

#include <algorithm>
#include <unordered_set>

namespace CleanCore {

namespace {

/// `now` minus `days`, clamped to the range of a Timestamp.
Timestamp cutoff(Timestamp now, std::int64_t days)
{
    constexpr double secondsPerDay = -24.0 * 3600.0;
    constexpr double nanosecondsPerSecond = 1e9;
    constexpr double limit = 9.2e18;
    const double offset = static_cast<double>(days) * secondsPerDay * nanosecondsPerSecond;
    const double sum = static_cast<double>(now.time_since_epoch().count()) + offset;
    if (sum <= -limit) {
        return Timestamp::min();
    }
    if (sum >= limit) {
        return Timestamp::max();
    }
    // Only the offset is computed in floating point, where whole days are exact; the sum would lose
    // nanoseconds. It is added in two halves, since the sum may be in range when the offset is not.
    const std::chrono::nanoseconds half(static_cast<std::int64_t>(offset / 2));
    return now + half + half;
}

} // namespace

ItemEnumerator::ItemEnumerator(std::shared_ptr<const FileManager> fileManager)
    : m_fileManager(std::move(fileManager))
{
}

std::vector<ScannedItem> ItemEnumerator::items(const std::string& inBase, std::int64_t minAgeDays,
                                               std::span<const std::string> exclusions,
                                               Timestamp now, const std::stop_token& stop) const
{
    if (!m_fileManager->exists(inBase)) {
        return {};
    }
    std::vector<std::string> names = m_fileManager->namesInFolder(inBase);
    std::unordered_set<std::string> excluded;
    for (const std::string& exclusion : exclusions) {
        excluded.insert(canonicalForm(exclusion));
    }
    if (!excluded.empty()) {
        std::erase_if(names, [&](const std::string& name) {
            return stop.stop_requested() || excluded.contains(canonicalForm(name));
        });
    }
    const std::vector<EntryMeasure> measures = m_fileManager->measure(inBase, names, stop);
    if (stop.stop_requested()) {
        return {};
    }
    const Timestamp latestAllowed = minAgeDays == 0 ? Timestamp::max() : cutoff(now, minAgeDays);
    std::vector<ScannedItem> items;
    for (std::size_t i = 0; i < names.size(); ++i) {
        if (measures[i].latestModification <= latestAllowed) {
            items.push_back({PathText::join(inBase, names[i]), measures[i].sizeBytes,
                             measures[i].latestModification, measures[i].identity,
                             measures[i].obstacle});
        }
    }
    std::stable_sort(items.begin(), items.end(), [](const ScannedItem& a, const ScannedItem& b) {
        return a.sizeBytes > b.sizeBytes;
    });
    return items;
}

} // namespace CleanCore
