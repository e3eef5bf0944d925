#include "Zorvane/State/Models/RingSegment.h"

#include "CleanCore/Support/SaturatingSum.h"

#include <QtGlobal>
#include <array>

namespace Zorvane {

namespace {

enum Group : std::size_t { whatsApp, caches, dev, other };

constexpr std::array<RingSegment, 4> groups = {{
    {"whats", QT_TRANSLATE_NOOP("RingSegment", "WhatsApp"), "catWhatsApp"},
    {"caches", QT_TRANSLATE_NOOP("RingSegment", "Caches"), "catCaches"},
    {"dev", QT_TRANSLATE_NOOP("RingSegment", "Dev (npm, brew)"), "catDev"},
    {"other", QT_TRANSLATE_NOOP("RingSegment", "Other"), "catOther"},
}};

Group groupOf(std::string_view ruleId)
{
    if (ruleId == "whatsapp-media") {
        return whatsApp;
    }
    if (ruleId.starts_with("dev-") || ruleId == "brew-cleanup") {
        return dev;
    }
    if (ruleId.starts_with("cache-") || ruleId.starts_with("logs-") ||
        ruleId.starts_with("temp-") || ruleId == "trash-user") {
        return caches;
    }
    return other;
}

} // namespace

std::vector<RingSegment> ringSegments(std::span<const CleanCore::CategoryResult> categories)
{
    std::array<RingSegment, groups.size()> segments = groups;
    for (const CleanCore::CategoryResult& category : categories) {
        std::int64_t& bytes = segments[groupOf(category.rule.id)].bytes;
        bytes = CleanCore::saturatingSum(bytes, category.totalBytes());
    }
    std::vector<RingSegment> shown;
    for (const RingSegment& segment : segments) {
        if (segment.bytes > 0) {
            shown.push_back(segment);
        }
    }
    return shown;
}

} // namespace Zorvane
