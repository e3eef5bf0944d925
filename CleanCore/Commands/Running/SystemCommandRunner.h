#pragma once

#include "CleanCore/Commands/Running/CommandRunning.h"

#include <stop_token>

namespace CleanCore {

/// Runs programs as child processes.
///
/// A child inherits the standard input, the environment and the working directory, with one change:
/// LC_ALL is "C", since its output is read by a program. Its standard output is a pipe, its
/// standard error the null device, no other descriptor reaches it, and its signal mask and
/// dispositions are the defaults. It is always reaped.
///
/// A child runs in a session of its own, without a terminal to ask on. Ctrl-C therefore reaches
/// only this program, and a child that reads from the inherited terminal is not stopped for good.
///
/// There is no time limit. All output is read, to the end of the pipe, before the end of the child
/// is awaited, even if a process that the child left behind keeps the pipe open. A child that a
/// signal ended has status 128 + signal. A launch failure is a std::system_error.
///
/// Listings, unlike cleans, may be ended early: a stop request kills the running child and its
/// process group at once, since the program may be gone before a grace period ends. run() then
/// throws std::errc::operation_canceled, in this call (unless the child ended first) and in every
/// later one. A runner made without a token lets its children run to their end.
class SystemCommandRunner final : public CommandRunning
{
public:
    SystemCommandRunner() = default;
    explicit SystemCommandRunner(std::stop_token stop) : m_stop(std::move(stop)) {}

    [[nodiscard]] std::string run(const std::string& executable,
                                  const std::vector<std::string>& arguments) const override;

private:
    std::stop_token m_stop;
};

} // namespace CleanCore
