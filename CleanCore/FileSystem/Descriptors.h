#pragma once

#include "CleanCore/Support/FileDescriptor.h"

#include <string>

namespace CleanCore {

// Every function that opens a file returns a closed descriptor, with errno set, when it fails.
// Child processes inherit none of these descriptors.

/// Opens the folder `name` in the folder open as `parent` for reading. Follows no link and never
/// waits. A path may stand in the place of the name if `parent` is AT_FDCWD.
[[nodiscard]] FileDescriptor openFolder(int parent, const char* name);

/// Holds the folder `name` in the folder open as `parent` (O_PATH), which takes no permission on
/// the folder itself. Follows no link.
[[nodiscard]] FileDescriptor holdFolder(int parent, const char* name);

/// Holds the folder that `path` leads to (O_PATH), through links.
[[nodiscard]] FileDescriptor holdFolderThroughLinks(const std::string& path);

/// A second descriptor of the same open file.
[[nodiscard]] FileDescriptor duplicate(int descriptor);

/// The present path of an open file, from the kernel (proc(5)); empty when it has none.
[[nodiscard]] std::string pathOfDescriptor(int descriptor);

/// Whether this errno means that the system lacked the descriptors or the memory for an operation,
/// which says nothing about the file.
[[nodiscard]] bool isShortage(int error);

} // namespace CleanCore
