#include "Words/ReclaimText.h"

namespace Words {

ReclaimCauseText reclaimCauseText(CleanCore::ReclaimCause cause)
{
    switch (cause) {
    case CleanCore::ReclaimCause::otherNames:
        return {"Files with several names", nullptr,
                "Such a file counts once, and only if all of its names are removed."};
    case CleanCore::ReclaimCause::sharedExtents:
        return {"Shared with copies or snapshots", nullptr,
                "The space comes back with the last of them."};
    case CleanCore::ReclaimCause::compressed:
        return {"Compressed by the file system", nullptr,
                "The files take up less of the disk than their sizes say."};
    case CleanCore::ReclaimCause::openFiles:
        return {"Open in a program", "Open in %1",
                "The space comes back when the program closes the files."};
    case CleanCore::ReclaimCause::inlineData:
        return {"Very small files", nullptr,
                "The file system keeps them in its own records, whose space stays in use."};
    case CleanCore::ReclaimCause::shownOnly:
        return {"Only shown", nullptr, "Zorvane does not remove these items."};
    case CleanCore::ReclaimCause::leftInPlace:
        return {"Left in place", nullptr, "They could not be looked into, or are not only yours."};
    case CleanCore::ReclaimCause::unknown:
        break;
    }
    return {"Not known beforehand", nullptr,
            "The file system, or the tool that clears the area, does not tell how much comes "
            "back."};
}

ReclaimCauseText unexplainedText()
{
    return {"Not explained", nullptr,
            "Other programs may have written to the disk meanwhile, or it was so full that the "
            "reserve of the system fills up first."};
}

} // namespace Words
