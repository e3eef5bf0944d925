#pragma once

#include "CleanCore/Support/FileDescriptor.h"

#include <string>

namespace CleanCore {

// How folders are opened wherever something is measured, walked or removed: a link on the way is an
// error (ELOOP), never followed. Each function returns a closed descriptor, with errno set, when it
// fails. Child processes inherit none of these descriptors.

/// Opens the folder `name` in the folder open as `parent` for reading. Follows no link and never
/// waits. A path may stand in the place of the name if `parent` is AT_FDCWD.
[[nodiscard]] FileDescriptor openFolder(int parent, const char* name);

/// Holds the folder `name` in the folder open as `parent` (O_PATH), which takes no permission on
/// the folder itself. Follows no link.
[[nodiscard]] FileDescriptor holdFolder(int parent, const char* name);

/// Holds the folder that `path` leads to (O_PATH), through links.
[[nodiscard]] FileDescriptor holdFolderThroughLinks(const std::string& path);

} // namespace CleanCore
