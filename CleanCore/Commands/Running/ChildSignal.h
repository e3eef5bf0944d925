#pragma once

namespace CleanCore {

/// Sets SIGCHLD to its default if it is ignored, as a program inherits it from some that start
/// others. The kernel then keeps of no child how it ended, so that every tool would count as
/// failed.
///
/// It changes the whole process, so it is for main() to call, before anything else.
void restoreChildSignal();

} // namespace CleanCore
