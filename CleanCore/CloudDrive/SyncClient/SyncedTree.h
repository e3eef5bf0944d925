#pragma once

#include "CleanCore/CloudDrive/SyncClient/Placeholders.h"

#include <functional>
#include <string>

namespace CleanCore {

/// Calls `visit` for the regular file at `path`, or for every one in the folder there, in the order
/// of their names, except for the client's own records. Follows no link, enters no other file
/// system and opens no file. `visit` returns whether to go on. Returns whether it went to the end.
bool visitSyncedFiles(
    const std::string& path, const Placeholders& placeholders,
    const std::function<bool(const std::string& path, const LocalEntry& entry)>& visit);

} // namespace CleanCore
