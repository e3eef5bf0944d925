#include "Words/LeftInPlaceText.h"

#include <array>
#include <utility>

namespace Words {

namespace {

using CleanCore::CleaningReport;
using Cause = CleaningReport::SkipCause;
using Reason = CleaningReport::SkipReason;

struct Text
{
    Reason reason;
    Cause cause;
    const char* title;
    const char* detail;
};

constexpr std::array texts = {
    Text{Reason::removalFailed, Cause::unknown, "%1 in use by an open app",
         "They were being written to right now. Close the app and run Zorvane again to clear "
         "them."},
    Text{Reason::removalFailed, Cause::notSeenWhole, "%1 could not be looked into",
         "The scan was not allowed to see everything in them, so they were left as they are."},
    Text{Reason::removalFailed, Cause::foreignEntries, "%1 not only yours",
         "They belong to another user, or hold another user's files or a mounted disk, so they "
         "were left as they are."},
    Text{Reason::removalFailed, Cause::changedSinceScan, "%1 replaced since the scan",
         "Something else has taken their place. Scan again to see it."},
    Text{Reason::blockedBySafetyGuard, Cause::unknown, "%1 protected by Zorvane",
         "They pointed into personal areas (like Documents or Photos). Zorvane refused to touch "
         "them."},
};

} // namespace

const char* obstacleText(CleanCore::Obstacle obstacle)
{
    switch (obstacle) {
    case CleanCore::Obstacle::foreignEntries:
        return "holds entries that are not yours; stays as it is";
    case CleanCore::Obstacle::notSeenWhole:
        return "could not be looked into everywhere; stays as it is";
    case CleanCore::Obstacle::none:
        break;
    }
    return "";
}

std::vector<SkippedGroup> skippedGroups(const CleaningReport& report)
{
    std::vector<SkippedGroup> groups;
    for (const Text& text : texts) {
        SkippedGroup group{text.title, text.detail, text.reason, {}};
        for (const CleaningReport::SkippedItem& item : report.skipped) {
            if (item.reason == text.reason && item.cause == text.cause) {
                group.items.push_back(&item);
            }
        }
        if (!group.items.empty()) {
            groups.push_back(std::move(group));
        }
    }
    return groups;
}

} // namespace Words
