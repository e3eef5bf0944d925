#include "CleanCore/Commands/Running/ChildSignal.h"
#include "CleanCore/Commands/Running/SystemCommandRunner.h"
#include "CleanCore/Rules/CleanCoreError.h"
#include "CleanCore/Support/FileDescriptor.h"
#include "tests/Support/RemovalFixture.h"

#include <array>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <list>
#include <poll.h>
#include <pty.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace CleanCoreTests {

using namespace CleanCore;
using Arguments = std::vector<std::string>;

namespace {

/// The output of a run, or "status N" or "error N".
std::string run(const std::string& executable, const Arguments& arguments = {},
                const std::stop_token& stop = {})
{
    try {
        return SystemCommandRunner(stop).run(executable, arguments);
    } catch (const CleanCoreError& error) {
        return "status " + std::to_string(error.status());
    } catch (const std::system_error& error) {
        return "error " + std::to_string(error.code().value());
    }
}

std::string shell(const std::string& script, const std::string& argument = {},
                  const std::stop_token& stop = {})
{
    return run("/bin/sh", {"-c", script, "sh", argument}, stop);
}

std::string error(int number)
{
    return "error " + std::to_string(number);
}

std::ptrdiff_t openDescriptors()
{
    const std::filesystem::directory_iterator entries("/proc/self/fd");
    return std::distance(begin(entries), end(entries));
}

bool hasChildren()
{
    return ::waitpid(-1, nullptr, WNOHANG) >= 0 || errno != ECHILD;
}

} // namespace

TEST(SystemCommandRunner, ReturnsStandardOutputOrTellsHowTheRunFailed)
{
    const TemporaryFolder folder;
    folder.make("text=0755");
    const std::pair<std::string, std::string> rows[] = {
        {shell("echo out; echo err >&2"), "out\n"},
        {shell("printf 'ü\\000x'"), std::string("ü\0x", 4)},
        // What is not UTF-8 is nothing.
        {shell("printf 'ok\\377'"), ""},
        {shell("printf '\\355\\240\\200'"), ""},
        {shell("head -c 200000 /dev/zero | tr '\\000' x"), std::string(200'000, 'x')},
        // The grandchild writes only once its parent is gone.
        {shell("parent=$$; (while ! grep -q '^State:.Z' /proc/$parent/status 2>/dev/null && "
               "kill -0 $parent 2>/dev/null; do :; done; echo late) & echo early"),
         "early\nlate\n"},
        {shell("exit 255"), "status 255"},
        {shell("echo lost; kill -KILL $$"), "status 137"},
        {run(folder.path("missing")), error(ENOENT)},
        {run(folder.path()), error(EACCES)},
        {run(folder.path("text")), error(ENOEXEC)},
        // Cut off at its null byte this would name another thing.
        {run(std::string("/bin/sh\0x", 9)), error(EINVAL)},
        {run("/bin/echo", {std::string("a\0b", 3)}), error(EINVAL)},
        {run("/usr/bin/printf", {"[%s]", "{{json .}}", "", "two words", "$HOME *", "a'b\"c", "\n"}),
         "[{{json .}}][][two words][$HOME *][a'b\"c][\n]"},
    };
    for (const auto& [result, expected] : rows) {
        EXPECT_EQ(result, expected);
    }
    std::stop_source stopped;
    stopped.request_stop();
    EXPECT_EQ(shell("echo >\"$1\"", folder.path("ran"), stopped.get_token()), error(ECANCELED));
    EXPECT_FALSE(folder.has("ran"));
}

TEST(SystemCommandRunner, PassesOnTheSurroundingsButNoSignalsAndNoDescriptors)
{
    inChildProcess([] {
        ::setenv("ZORVANE_TEST", "kept value", 1);
        ::setenv("LC_ALL", "de_DE.UTF-8", 1);
        EXPECT_EQ(shell("echo \"$ZORVANE_TEST $LC_ALL\"; env | grep -c ^LC_ALL=; pwd -P"),
                  "kept value C\n1\n" + std::filesystem::current_path().string() + "\n");
        sigset_t all;
        ::sigfillset(&all);
        ::pthread_sigmask(SIG_SETMASK, &all, nullptr);
        std::signal(SIGPIPE, SIG_IGN);
        const std::string status = run("/bin/cat", {"/proc/self/status"});
        EXPECT_NE(status.find("SigBlk:\t0000000000000000\n"), std::string::npos) << status;
        // Those above 31 that the C library keeps for itself do not count.
        const std::string ignored = status.substr(status.find("SigIgn:") + 7, 17);
        EXPECT_EQ(std::stoull(ignored, nullptr, 16) & 0x7fff'ffffU, 0U) << ignored;
        // One that a careless library left without close-on-exec, far up. The shell's glob opens
        // the folder itself, as one descriptor more.
        EXPECT_EQ(::fcntl(STDOUT_FILENO, F_DUPFD, 700), 700);
        const std::string open = shell("cd /proc/$$/fd && echo *");
        EXPECT_EQ(open.find("700"), std::string::npos) << open;
        EXPECT_LE(std::count(open.begin(), open.end(), ' '), 4) << open;
    });
}

TEST(SystemCommandRunner, WorksWithAnyStandardStreamClosed)
{
    for (int closed = 1; closed < 8; ++closed) {
        inChildProcess([=] {
            for (int stream = 0; stream < 3; ++stream) {
                static_cast<void>((closed >> stream & 1) != 0 && ::close(stream) == 0);
            }
            EXPECT_EQ(shell("ls /proc/self/fd >/dev/null && echo out; echo err >&2"), "out\n");
        });
    }
}

TEST(SystemCommandRunner, ServesManyThreadsAtOnceAndLeavesNothingBehind)
{
    const std::ptrdiff_t before = openDescriptors();
    std::list<std::jthread> running;
    for (int index = 0; index < 32; ++index) {
        running.emplace_back([index] {
            const std::string result = index % 2 == 0 ? "2000\n" : "status 1";
            EXPECT_EQ(shell("seq $1 2000 | tail -n1; exit $(($1 % 2))", std::to_string(index)),
                      result);
            EXPECT_EQ(run("/missing"), error(ENOENT));
        });
    }
    running.clear();
    EXPECT_EQ(openDescriptors(), before);
    EXPECT_FALSE(hasChildren());
}

TEST(SystemCommandRunner, AStopRequestEndsWhateverTheChildHasStartedAndIgnores)
{
    const TemporaryFolder folder;
    folder.make("alive|");
    const std::string path = folder.path("alive");
    for (const std::string hanging : {"echo started >&9; exec sleep 600 >&-",
                                      // What keeps the output open is not waited for.
                                      "sleep 600 & echo started >&9; wait",
                                      "(trap '' TERM INT HUP; echo started >&9; sleep 600) & wait",
                                      "(sleep 600 &); echo started >&9; kill -STOP $$"}) {
        const FileDescriptor watch(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
        std::stop_source source;
        const std::jthread stopper([&] {
            pollfd started = {watch.get(), POLLIN, 0};
            ::poll(&started, 1, -1);
            source.request_stop();
        });
        // Each of its processes holds the FIFO open until it ends.
        EXPECT_EQ(shell("exec 9>\"$1\"; " + hanging, path, source.get_token()), error(ECANCELED));
        std::array<char, 16> line = {};
        ASSERT_EQ(::read(watch.get(), line.data(), line.size()), 8);
        pollfd ended = {watch.get(), 0, 0};
        EXPECT_EQ(::poll(&ended, 1, 60'000), 1) << hanging;
        EXPECT_NE(ended.revents & POLLHUP, 0) << hanging;
    }
    EXPECT_FALSE(hasChildren());
}

TEST(SystemCommandRunner, AToolThatWantsTheTerminalIsNotStoppedForGood)
{
    // As a background process of the terminal it would be, and waited for.
    int terminal = -1;
    const pid_t child = ::forkpty(&terminal, nullptr, nullptr, nullptr);
    if (child == 0) {
        ::alarm(60);
        const std::string output =
            shell("read -r line; echo \"$line\"; read -r line </dev/tty || echo nobody to ask");
        ::_exit(output == "typed\nnobody to ask\n" ? 0 : 1);
    }
    ASSERT_EQ(::write(terminal, "typed\n", 6), 6);
    int status = -1;
    EXPECT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
    ::close(terminal);
}

TEST(SystemCommandRunner, KnowsHowAChildEndedThoughTheProgramWasStartedIgnoringThat)
{
    const auto before = std::signal(SIGCHLD, SIG_IGN);
    restoreChildSignal();
    EXPECT_EQ(run("/bin/false"), "status 1");
    // What somebody has installed on purpose stays.
    const auto handler = [](int /*signal*/) {};
    std::signal(SIGCHLD, handler);
    restoreChildSignal();
    EXPECT_EQ(std::signal(SIGCHLD, before), +handler);
}

} // namespace CleanCoreTests
