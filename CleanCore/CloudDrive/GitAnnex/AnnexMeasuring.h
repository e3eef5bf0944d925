#pragma once

#include "CleanCore/CloudDrive/GitAnnex/AnnexRecord.h"
#include "CleanCore/CloudDrive/ICloudItem.h"

#include <map>
#include <set>
#include <span>
#include <string>
#include <vector>

namespace CleanCore {

/// Adds up which contents of a repository are on this disk, by its entries. A content counts once,
/// whatever the number of files that have it: its space comes back once. Copies of contents that
/// stand in the place of unlocked files do not count, as edited ones stay when the content goes.
class AnnexMeasuring
{
public:
    /// `paths`: the entries of the repository `container` to measure.
    AnnexMeasuring(std::string container, std::span<const std::string> paths);

    /// The names of those entries that git-annex calls by their names, and of the others.
    [[nodiscard]] std::vector<std::string> exactNames() const { return names(true); }
    [[nodiscard]] std::vector<std::string> inexactNames() const { return names(false); }

    /// Counts the content of a file for the entry that holds the file, or for the named one. Files
    /// in other entries are skipped.
    void add(const AnnexRecord& record);
    void add(const AnnexRecord& record, const std::string& name);

    /// Marks all entries as not measured in time.
    void markLate();

    /// One for each path, in their order.
    [[nodiscard]] std::vector<ICloudMeasure> results() &&;

private:
    [[nodiscard]] std::vector<std::string> names(bool areExact) const;
    [[nodiscard]] std::int64_t bytesHere(const AnnexRecord& record) const;

    std::string m_container;
    std::vector<ICloudMeasure> m_results;
    std::map<std::string, std::size_t, std::less<>> m_places;
    std::set<std::string> m_counted;
};

} // namespace CleanCore
