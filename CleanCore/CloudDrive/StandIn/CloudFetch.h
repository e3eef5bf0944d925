#pragma once

#include "CleanCore/CloudDrive/StandIn/CloudContent.h"
#include "CleanCore/CloudDrive/StandIn/CloudFilePair.h"
#include "CleanCore/CloudDrive/StandIn/CloudMarker.h"

#include <cstdint>
#include <optional>

namespace CleanCore {

/// Fetches the content of placeholders.
///
/// The content is written into the placeholder itself, step by step from its beginning. Each step
/// is durable before the marker shrinks by it, and an interrupted fetch continues where the marker
/// says. The file counts as local only after all of it was read back and found equal to the
/// mirror's copy, which must still have the released content. A file without a marker counts as a
/// placeholder if it has no data at all and the length and time of the copy. Not for use by two
/// threads at once.
class CloudFetch
{
public:
    explicit CloudFetch(std::int64_t stepBytes) : m_stepBytes(stepBytes) {}

    /// Fetches one regular file; one that is local stays as it is. Returns why it was refused,
    /// nothing otherwise.
    [[nodiscard]] std::optional<CloudFailure> fetchFile(const CloudEntry& entry);

private:
    [[nodiscard]] std::optional<CloudFailure> prove(const CloudFilePair& pair, CloudMarker& marker);
    [[nodiscard]] std::optional<CloudFailure>
    fillStep(const CloudEntry& entry, const CloudFilePair& pair, CloudMarker& marker);
    [[nodiscard]] std::optional<CloudFailure> finish(const CloudFilePair& pair,
                                                     const CloudMarker& marker);

    std::int64_t m_stepBytes;
    CloudContent m_content;
};

} // namespace CleanCore
