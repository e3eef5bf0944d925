#pragma once

namespace Zorvane {

/// Whether the user has turned animations off: the "enable-animations" setting of the desktop's
/// portal (org.freedesktop.portal.Settings), or an animation speed of 0 in KDE. False where neither
/// is known. Main thread; waits a fraction of a second at most.
[[nodiscard]] bool wantsReducedMotion();

} // namespace Zorvane
