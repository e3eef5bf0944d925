#include "CleanCore/Commands/Running/LineRun.h"
#include "tests/Support/TemporaryFolder.h"

#include <cerrno>
#include <cstdlib>
#include <gtest/gtest.h>

namespace CleanCoreTests {
namespace {

using namespace CleanCore;

TEST(LineRun, GivesLinesTheComplaintAndTheEnd)
{
    const TemporaryFolder folder;
    ::setenv("HIDE_ME", "1", 1);
    std::string lines;
    const auto run = [&](const std::string& script, const std::stop_token& stop = {},
                         std::optional<std::chrono::steady_clock::time_point> deadline = {}) {
        lines.clear();
        const auto result = runForLines(
            {"/bin/sh", {"-c", script}, folder.path(), "HIDE_"},
            [&](std::string_view line) { lines += std::string(line) + '|'; }, stop, deadline);
        return std::to_string(static_cast<int>(result.end)) + ' ' + std::to_string(result.status) +
               ' ' + result.complaint;
    };
    EXPECT_EQ(run("echo \"$HIDE_ME$LC_ALL\"; pwd; cat; printf 'no end'; echo bad >&2; exit 3"),
              "0 3 bad\n");
    EXPECT_EQ(lines, "C.UTF-8|" + folder.path() + "|");
    EXPECT_EQ(run("exec sleep 100", {}, std::chrono::steady_clock::now()), "2 137 ");
    std::stop_source stop;
    stop.request_stop();
    EXPECT_EQ(
        run("trap 'echo left in order; exit 4' INT; echo; while :; do read x </dev/zero; done",
            stop.get_token())
            .substr(0, 2),
        "1 ");
    EXPECT_EQ(runForLines({"/no/program", {}, "/", ""}, nullptr).status, ENOENT);
}

} // namespace
} // namespace CleanCoreTests
