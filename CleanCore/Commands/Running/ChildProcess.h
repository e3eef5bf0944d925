#pragma once

#include <string>
#include <sys/types.h>
#include <utility>
#include <vector>

namespace CleanCore {

/// Owns one running child: whoever drops it before its end was collected kills it and collects it.
///
/// The child leads a session and so a process group of its own, to which the processes that it
/// starts belong too. How it ended is known only where SIGCHLD is not ignored; see
/// restoreChildSignal().
class ChildProcess
{
public:
    /// Starts `executable` with its standard output on `output`, an open descriptor above the three
    /// standard ones. Throws std::system_error.
    [[nodiscard]] static ChildProcess start(const std::string& executable,
                                            const std::vector<std::string>& arguments, int output);

    ChildProcess(ChildProcess&& other) noexcept : m_id(std::exchange(other.m_id, -1)) {}
    ChildProcess& operator=(ChildProcess&&) = delete;
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;
    ~ChildProcess();

    /// Ends the child and what it has started, at once: nothing can ignore it. From any thread,
    /// until collect() is called.
    void kill() const;

    /// Waits for the end and leaves the child to be collected, so that its id stays its own.
    /// Throws std::system_error.
    void waitForEnd() const;

    /// Takes the ended child out of the system's list. Returns its exit status, or 128 + the signal
    /// that ended it. Throws std::system_error.
    [[nodiscard]] int collect();

private:
    explicit ChildProcess(pid_t id) : m_id(id) {}

    pid_t m_id;
};

} // namespace CleanCore
