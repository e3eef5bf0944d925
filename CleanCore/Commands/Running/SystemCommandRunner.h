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
/// It runs in a session of its own, without a terminal to ask on: Ctrl-C reaches this program only,
/// which decides what it ends, and reading from an inherited terminal cannot stop it for good.
///
/// There is no time limit. All output is read before the end is waited for, to the end of the pipe,
/// also if a process that the child left behind keeps it open. An end by signal counts as status
/// 128 + signal. A launch failure is a std::system_error.
///
/// Listings, unlike cleans, may be ended early: a stop request kills the running child with all
/// that it has started, without a chance to refuse, since nobody may be left to ask twice. run()
/// then throws, in this call and in every later one (std::errc::operation_canceled unless the child
/// is what ended first). A runner made without a token lets its children run to their end.
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
