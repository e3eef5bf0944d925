#pragma once

namespace Zorvane {

/// Which screen the window shows.
enum class Phase { termsAcceptance, needsPermission, ready, scanning, results };

} // namespace Zorvane
