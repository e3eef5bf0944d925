#pragma once

#include "CleanCore/CloudDrive/CloudRefusal.h"
#include "CleanCore/CloudDrive/StandIn/CloudContent.h"
#include "CleanCore/CloudDrive/StandIn/CloudMarker.h"
#include "CleanCore/CloudDrive/StandIn/CloudPlace.h"

#include <cstdint>
#include <optional>

namespace CleanCore {

class CloudFilePair;

/// Brings the content of placeholders back.
///
/// The content is written into the placeholder itself, step by step from its beginning, each step
/// durable before the marker lets go of it; a fetch that was cut short is taken up where the marker
/// says. The file counts as local only after all of it was read back and found equal to the
/// mirror's copy, which must still be the content that was released. A file that a cloud drive made
/// a placeholder before there was a marker counts as one if it has no data at all and the length
/// and time of the copy. Not for use by two threads at once.
class CloudFetch
{
public:
    explicit CloudFetch(std::int64_t stepBytes) : m_stepBytes(stepBytes) {}

    /// Fetches one regular file. One that is local is left alone. Returns why it was refused,
    /// nothing otherwise.
    [[nodiscard]] std::optional<CloudFailure> fetchFile(const CloudPlace& place);

private:
    [[nodiscard]] std::optional<CloudFailure> prove(const CloudFilePair& pair, CloudMarker& marker);
    [[nodiscard]] std::optional<CloudFailure> takeStep(const CloudPlace& place,
                                                       const CloudFilePair& pair,
                                                       CloudMarker& marker,
                                                       const timespec& lastTime);
    [[nodiscard]] std::optional<CloudFailure> finish(const CloudFilePair& pair,
                                                     const CloudMarker& marker);

    std::int64_t m_stepBytes;
    CloudContent m_content;
};

} // namespace CleanCore
