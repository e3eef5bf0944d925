#pragma once

#include "CleanCore/Reclaim/VolumeFacts.h"

namespace CleanCore {

/// The names of other processes that have one of these files open, mapped or running, from
/// proc(5). Processes of other users show only to root.
[[nodiscard]] std::map<FileKey, std::set<std::string>> openPrograms(const std::set<FileKey>& files);

} // namespace CleanCore
