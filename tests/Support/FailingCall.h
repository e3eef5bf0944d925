#pragma once

#include <functional>

namespace CleanCoreTests {

/// Runs `work` in a child process in which the system call `number` fails with `error`, and returns
/// what `work` returned, which must lie between 0 and 127; more when the child died otherwise.
[[nodiscard]] int runWithFailingCall(long number, int error, const std::function<int()>& work);

/// Runs `work` in a child process that is killed (SIGKILL) once it has made `calls` system calls.
/// Returns whether that came before the end of `work`.
[[nodiscard]] bool runUntilCall(int calls, const std::function<void()>& work);

} // namespace CleanCoreTests
