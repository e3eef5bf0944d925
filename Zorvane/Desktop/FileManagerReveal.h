#pragma once

#include <string>
#include <vector>

namespace Zorvane {

/// Shows files in the desktop's file manager, selected together: ShowItems of the D-Bus interface
/// org.freedesktop.FileManager1; where there is none, opens the folders that hold them. Main
/// thread; returns at once and tells nothing.
void revealInFileManager(const std::vector<std::string>& paths);

} // namespace Zorvane
