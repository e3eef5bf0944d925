#pragma once

#include <string>
#include <vector>

namespace Zorvane {

/// Opens the desktop's file manager with the files selected, by ShowItems of the D-Bus interface
/// org.freedesktop.FileManager1. Without such a file manager it opens the folders that hold the
/// files. Main thread; returns at once and reports no failure.
void revealInFileManager(const std::vector<std::string>& paths);

} // namespace Zorvane
