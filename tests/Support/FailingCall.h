#pragma once

#include <cerrno>
#include <csignal>
#include <cstddef>
#include <functional>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <stdexcept>
#include <sys/prctl.h>
#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>

namespace CleanCoreTests {

inline constexpr int childTrouble = 255;

inline int waitFor(pid_t child)
{
    int status = -1;
    while (child > 0 && ::waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    return status;
}

inline void endProcess(pid_t child)
{
    if (child > 0) {
        ::kill(child, SIGKILL);
        waitFor(child);
    }
}

/// Makes the system call `number` fail with `error` from now on, where its third argument is at
/// least `third`.
inline bool installFilter(long number, int error, unsigned third)
{
    sock_filter program[] = {
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, static_cast<unsigned>(number), 0, 3),
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, args[2])),
        BPF_JUMP(BPF_JMP | BPF_JGE | BPF_K, third, 0, 1),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | static_cast<unsigned>(error)),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
    };
    const sock_fprog filter = {6, program};
    return ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
           ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &filter) == 0;
}

/// Runs `work` in a child process in which installFilter() was called, and returns what it
/// returned, which must lie between 0 and 127; more when the child died otherwise.
[[nodiscard]] inline int runWithFailingCall(long number, int error,
                                            const std::function<int()>& work, unsigned third = 0)
{
    const pid_t child = ::fork();
    if (child == 0) {
        ::_exit(installFilter(number, error, third) ? work() : childTrouble);
    }
    const int status = waitFor(child);
    return WIFEXITED(status) ? WEXITSTATUS(status) : childTrouble;
}

/// Runs `work` in a child process that is killed (SIGKILL) once it has made `calls` system calls.
/// Returns whether that came before the end of `work`.
[[nodiscard]] inline bool runUntilCall(int calls, const std::function<void()>& work)
{
    const pid_t child = ::fork();
    if (child == 0) {
        if (::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0) {
            ::_exit(childTrouble);
        }
        ::raise(SIGSTOP);
        work();
        ::_exit(0);
    }
    int status = waitFor(child);
    // Each call stops the child twice: before and after it.
    for (int stops = 2 * calls; WIFSTOPPED(status) && stops > 0; --stops) {
        ::ptrace(PTRACE_SYSCALL, child, nullptr, nullptr);
        status = waitFor(child);
    }
    if (WIFSTOPPED(status)) {
        endProcess(child);
        return true;
    }
    return status == 0 ? false : throw std::runtime_error("the child could not start");
}

} // namespace CleanCoreTests
