#pragma once

#include "CleanCore/Reclaim/ReclaimFindings.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace CleanCore {

/// Adds the findings about chosen items up: a file counts if all of its names are chosen, a part of
/// the volume once.
class ReclaimSum
{
public:
    /// An item that was not examined counts as unknown, with its size.
    void add(std::int64_t sizeBytes, const ReclaimFindings& findings);
    /// An item that a clean leaves whole.
    void addLeftInPlace(std::int64_t bytes);
    /// An item of an area that is only shown.
    void addShownOnly(std::int64_t bytes);
    /// An item that a tool removes, with the size that it tells.
    void addOfTool(std::int64_t bytes);

    [[nodiscard]] Reclaim result() const;

private:
    struct Sums
    {
        std::int64_t certainBytes = 0;
        BytesByCause doubtful = {};
        BytesByCause lost = {};

        void addDoubtful(ReclaimCause cause, std::int64_t bytes);
        void addLost(ReclaimCause cause, std::int64_t bytes);
    };

    /// A file with several names, with all of its chosen ones.
    struct ChosenFile;
    struct ChosenExtent;

    [[nodiscard]] std::vector<ChosenFile> chosenFiles() const;
    [[nodiscard]] std::vector<ChosenExtent>
    chosenExtents(const std::vector<ChosenFile>& files) const;
    static void addFile(const ChosenFile& chosen, bool isCutShort, Sums& sums);
    static void addExtents(const std::vector<ChosenExtent>& extents, Sums& sums);

    Sums m_sums;
    std::int64_t m_recordBytes = 0;
    std::vector<std::shared_ptr<const ReclaimDetails>> m_details;
};

} // namespace CleanCore
