#pragma once

#include "CleanCore/FileSystem/EntryStatus.h"

#include <string>

namespace CleanCore {

/// One entry of the container, by the folder that holds it, with the mirror's folder beside it.
/// Only for the time of one call: the folders belong to the walk.
struct CloudPlace
{
    int folder = -1;
    EntryStatus folderStatus;
    /// -1 where the mirror has no such folder.
    int mirrorFolder = -1;
    EntryStatus mirrorFolderStatus;
    std::string name;
    /// The entry's absolute path, to report it by.
    std::string path;
};

} // namespace CleanCore
