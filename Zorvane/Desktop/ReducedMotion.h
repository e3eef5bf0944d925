#pragma once

namespace Zorvane {

/// Whether the desktop asks programs not to move things: the "enable-animations" setting as its
/// portal tells it (org.freedesktop.portal.Settings), or a speed of nothing in KDE's. Main thread;
/// waits a fraction of a second at most. False where nobody knows.
[[nodiscard]] bool wantsReducedMotion();

} // namespace Zorvane
