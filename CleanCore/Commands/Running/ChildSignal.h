#pragma once

namespace CleanCore {

/// Sets SIGCHLD to its default if it is ignored, which some parents pass on. The kernel would not
/// keep the exit status of any child, and every tool would count as failed.
///
/// Changes the whole process; main() calls it before anything else.
void restoreChildSignal();

} // namespace CleanCore
