#pragma once

namespace Zorvane {

/// Opens what this desktop has for the permissions of applications; does nothing where there is
/// none. Main thread; returns at once.
void openPermissionSettings();

} // namespace Zorvane
