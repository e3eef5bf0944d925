#pragma once

#include "Zorvane/Startup/ApplicationOptions.h"
#include "Zorvane/State/Environment.h"

namespace Zorvane {

/// The home in use and the collaborators made for it. Points the process's environment into another
/// home, so it must run before any thread is started and before Qt reads the environment. Throws
/// CleanCore::StartError.
[[nodiscard]] Environment makeEnvironment(const ApplicationOptions& options);

} // namespace Zorvane
