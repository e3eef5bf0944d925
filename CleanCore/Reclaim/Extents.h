#pragma once

#include "CleanCore/Reclaim/VolumeFacts.h"

#include <stop_token>

namespace CleanCore {

/// Reads the extents of an open file (FS_IOC_FIEMAP, Documentation/filesystems/fiemap.rst of the
/// kernel) into `space`. Data that was not written to the disk yet is written first. Reads page by
/// page, so that memory is needed only for extents that are shared or compressed. False if the file
/// system does not tell, or a stop was requested.
[[nodiscard]] bool readExtents(int file, const std::stop_token& stop, FileSpace& space);

} // namespace CleanCore
