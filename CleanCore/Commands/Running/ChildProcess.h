#pragma once

#include <string>
#include <sys/types.h>
#include <utility>
#include <vector>

namespace CleanCore {

/// Where and in which language a child works, and what it may learn of this program.
struct ChildSettings
{
    /// Its working directory; empty for this program's.
    std::string folder = {};
    std::string locale = "C";
    /// An open descriptor for its standard error, or -1 for the null device.
    int errors = -1;
    /// Whether its standard input is the null device instead of this program's.
    bool isWithoutInput = false;
    /// Variables whose names begin so do not reach it; empty for none.
    std::string hiddenVariables = {};
};

/// Owns one running child: the destructor kills a child that was not collected, and collects it.
///
/// The child leads a session and a process group of its own, which the processes that it starts
/// join. Its exit status is known only where SIGCHLD is not ignored; see restoreChildSignal().
class ChildProcess
{
public:
    /// Starts `executable` with its standard output on `output`, an open descriptor above the three
    /// standard ones. Throws std::system_error.
    [[nodiscard]] static ChildProcess start(const std::string& executable,
                                            const std::vector<std::string>& arguments, int output,
                                            const ChildSettings& settings = {});

    ChildProcess(ChildProcess&& other) noexcept : m_id(std::exchange(other.m_id, -1)) {}
    ChildProcess& operator=(ChildProcess&&) = delete;
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;
    ~ChildProcess();

    /// Kills the child and the processes of its group. From any thread, until collect() is called.
    void kill() const;

    /// Asks the child and the processes of its group to end, as Ctrl-C does.
    void interrupt() const;

    /// Waits for the end without collecting the child, so that its id is not reused. Throws
    /// std::system_error.
    void waitForEnd() const;

    /// Collects the ended child. Returns its exit status, or 128 + the signal that ended it. Throws
    /// std::system_error.
    [[nodiscard]] int collect();

private:
    explicit ChildProcess(pid_t id) : m_id(id) {}

    void sendSignal(int number) const;

    pid_t m_id;
};

} // namespace CleanCore
