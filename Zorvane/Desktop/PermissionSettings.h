#pragma once

namespace Zorvane {

/// Opens the desktop's settings for the permissions of applications. Does nothing if it has none.
/// Main thread; returns at once.
void openPermissionSettings();

} // namespace Zorvane
