#include "CleanCore/Commands/Running/ChildSignal.h"
#include "CleanCore/Commands/Running/SystemCommandRunner.h"
#include "CleanCore/Rules/CleanCoreError.h"
#include "CleanCore/Support/FileDescriptor.h"
#include "tests/Support/TemporaryFolder.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <poll.h>
#include <pty.h>
#include <sys/wait.h>
#include <system_error>
#include <thread>
#include <unistd.h>

namespace CleanCoreTests {

using namespace CleanCore;
using Arguments = std::vector<std::string>;

namespace {

/// Small programs of the test's own, run through the real runner.
class SystemCommandRunnerTest : public testing::Test
{
protected:
    [[nodiscard]] std::string program(const std::string& body) const
    {
        const std::string name = "program " + std::to_string(++m_count);
        std::string path = folder.makeFile(name, "#!/bin/sh\n" + body + "\n");
        folder.setMode(name, 0755);
        return path;
    }

    /// What a run gives: its output, or "status N" or "error N".
    [[nodiscard]] std::string run(const std::string& executable, const Arguments& arguments = {},
                                  const std::stop_token& stop = {}) const
    {
        try {
            return SystemCommandRunner(stop).run(executable, arguments);
        } catch (const CleanCoreError& error) {
            EXPECT_EQ(error, CleanCoreError::commandFailed(executable, error.status()));
            return "status " + std::to_string(error.status());
        } catch (const std::system_error& error) {
            return "error " + std::to_string(error.code().value());
        }
    }

    const TemporaryFolder folder;

private:
    mutable int m_count = 0;
};

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

TEST_F(SystemCommandRunnerTest, ReturnsStandardOutputOrTellsHowTheRunFailed)
{
    folder.make("plain text=0755");
    std::string numbers;
    for (int number = 1; number <= 50'000; ++number) {
        numbers += std::to_string(number) + "\n";
    }
    const std::pair<std::string, std::string> rows[] = {
        {program("echo out; echo err >&2"), "out\n"},
        {program("printf 'ü\\000x'"), std::string("ü\0x", 4)},
        // What is not UTF-8 is nothing.
        {program("printf 'ok\\377'"), ""},
        {program("printf '\\300\\200'"), ""},
        {program("printf '\\355\\240\\200'"), ""},
        {program("seq 50000"), numbers},
        // The grandchild writes only once its parent is gone.
        {program("parent=$$; (while ! grep -q '^State:.Z' /proc/$parent/status 2>/dev/null && "
                 "kill -0 $parent 2>/dev/null; do :; done; echo late) & echo early"),
         "early\nlate\n"},
        {program("exit 255"), "status 255"},
        {program("echo lost; kill -KILL $$"), "status 137"},
        {folder.path("missing"), "error " + std::to_string(ENOENT)},
        {folder.path("plain"), "error " + std::to_string(EACCES)},
        {folder.path(), "error " + std::to_string(EACCES)},
        {folder.path("text"), "error " + std::to_string(ENOEXEC)},
        {std::string("/bin/sh\0x", 9), "error " + std::to_string(EINVAL)},
    };
    for (const auto& [executable, result] : rows) {
        EXPECT_EQ(run(executable), result) << executable;
    }
    // Cut off at its null byte this would name another thing.
    EXPECT_EQ(run("/bin/echo", {std::string("a\0b", 3)}), "error " + std::to_string(EINVAL));
    EXPECT_EQ(run(program("printf '[%s]' \"$@\""),
                  {"system", "{{json .}}", "", "two words", "$HOME *", "a'b\"c", "\n"}),
              "[system][{{json .}}][][two words][$HOME *][a'b\"c][\n]");
    std::stop_source source;
    source.request_stop();
    EXPECT_EQ(run(program("touch '" + folder.path("ran") + "'"), {}, source.get_token()),
              "error " + std::to_string(ECANCELED));
    EXPECT_FALSE(folder.has("ran"));
}

TEST_F(SystemCommandRunnerTest, PassesOnTheSurroundingsButNoSignalsAndNoDescriptors)
{
    ::setenv("ZORVANE_TEST", "kept value", 1);
    ::setenv("LC_ALL", "de_DE.UTF-8", 1);
    EXPECT_EQ(run(program("echo \"$ZORVANE_TEST $LC_ALL\"; env | grep -c ^LC_ALL=; pwd -P")),
              "kept value C\n1\n" + std::filesystem::current_path().string() + "\n");

    sigset_t all;
    sigset_t before;
    ::sigfillset(&all);
    ::pthread_sigmask(SIG_SETMASK, &all, &before);
    const auto pipeBefore = std::signal(SIGPIPE, SIG_IGN);
    const std::string status = run("/bin/cat", {"/proc/self/status"});
    std::signal(SIGPIPE, pipeBefore);
    ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
    EXPECT_NE(status.find("SigBlk:\t0000000000000000\n"), std::string::npos) << status;
    // Those above 31 that the C library keeps for itself do not count.
    const std::string ignored = status.substr(status.find("SigIgn:") + 7, 17);
    EXPECT_EQ(std::stoull(ignored, nullptr, 16) & 0x7fff'ffffU, 0U) << ignored;

    // One that a careless library left without close-on-exec, far up. The shell's glob opens the
    // folder itself, as one descriptor more.
    const int careless = ::fcntl(STDOUT_FILENO, F_DUPFD, 700);
    const std::string open = run(program("cd /proc/$$/fd && echo *"));
    ::close(careless);
    EXPECT_EQ(open.find("700"), std::string::npos) << open;
    EXPECT_LE(std::count(open.begin(), open.end(), ' '), 4) << open;
}

TEST_F(SystemCommandRunnerTest, WorksWithAnyStandardStreamClosed)
{
    const std::string listing = program(
        "read -r line && echo $line; ls /proc/self/fd >/dev/null && echo out; echo err >&2");
    const std::string input = folder.makeFile("input", "typed\n");
    for (int closed = 0; closed < 8; ++closed) {
        std::array<int, 3> saved = {};
        for (int stream = 0; stream < 3; ++stream) {
            saved[static_cast<std::size_t>(stream)] = ::fcntl(stream, F_DUPFD_CLOEXEC, 10);
        }
        const FileDescriptor file(::open(input.c_str(), O_RDONLY | O_CLOEXEC));
        ::dup2(file.get(), STDIN_FILENO);
        for (int stream = 0; stream < 3; ++stream) {
            if ((closed >> stream & 1) != 0) {
                ::close(stream);
            }
        }
        const std::string output = run(listing);
        for (int stream = 0; stream < 3; ++stream) {
            ::dup2(saved[static_cast<std::size_t>(stream)], stream);
            ::close(saved[static_cast<std::size_t>(stream)]);
        }
        EXPECT_EQ(output, (closed & 1) != 0 ? "out\n" : "typed\nout\n") << closed;
    }
}

TEST_F(SystemCommandRunnerTest, ServesManyThreadsAtOnceAndLeavesNothingBehind)
{
    constexpr int threads = 32;
    const std::ptrdiff_t before = openDescriptors();
    {
        // Each child reports and waits to be let go, so that none can be done before another
        // begins.
        folder.make("arrived| go|");
        const FileDescriptor arrivals(::open(folder.path("arrived").c_str(), O_RDWR | O_CLOEXEC));
        const FileDescriptor gate(::open(folder.path("go").c_str(), O_RDWR | O_CLOEXEC));
        const std::string waiting = program(
            "echo >\"$1\"; read -r line <\"$2\"; seq \"$3\" 2000 | tail -n1; exit $(($3 % 2))");
        std::atomic<int> succeeded = 0;
        std::vector<std::jthread> running;
        running.reserve(threads);
        for (int index = 0; index < threads; ++index) {
            running.emplace_back([&, index] {
                const std::string result = run(
                    waiting, {folder.path("arrived"), folder.path("go"), std::to_string(index)});
                succeeded += result == (index % 2 == 0 ? "2000\n" : "status 1") ? 1 : 0;
            });
        }
        for (char line = 0, count = 0; count < threads; ++count) {
            ASSERT_EQ(::read(arrivals.get(), &line, 1), 1);
        }
        const std::string permits(threads, '\n');
        ASSERT_EQ(::write(gate.get(), permits.data(), permits.size()), threads);
        running.clear();
        EXPECT_EQ(succeeded, threads);
    }
    std::stop_source source;
    const std::string killed = program("kill -KILL $$");
    for (int round = 0; round < 50; ++round) {
        EXPECT_EQ(run("/bin/echo", {"x"}, source.get_token()), "x\n");
        EXPECT_EQ(run("/bin/false"), "status 1");
        EXPECT_EQ(run(folder.path("missing")), "error " + std::to_string(ENOENT));
        EXPECT_EQ(run(killed), "status 137");
    }
    EXPECT_EQ(openDescriptors(), before);
    EXPECT_FALSE(hasChildren());
}

TEST_F(SystemCommandRunnerTest, AStopRequestEndsWhateverTheChildHasStartedAndIgnores)
{
    folder.make("alive|");
    for (const char* const hanging :
         {"echo started >&9; exec sleep 600 >&-",
          // What keeps the output open is not waited for.
          "sleep 600 & echo started >&9; wait", "sleep 600 >&- & echo started >&9; wait",
          "(trap '' TERM INT HUP; echo started >&9; sleep 600) & wait",
          "trap '' TERM INT HUP; echo started >&9; while :; do sleep 600; done",
          "(sleep 600 &); echo started >&9; kill -STOP $$"}) {
        SCOPED_TRACE(hanging);
        const FileDescriptor watch(
            ::open(folder.path("alive").c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
        std::stop_source source;
        const std::jthread stopper([&] {
            pollfd started = {watch.get(), POLLIN, 0};
            ::poll(&started, 1, -1);
            source.request_stop();
        });
        // Each of its processes holds the FIFO open until it ends.
        EXPECT_EQ(run(program("exec 9>\"$1\"; " + std::string(hanging)), {folder.path("alive")},
                      source.get_token())
                      .substr(0, 5),
                  "error");
        std::array<char, 16> line = {};
        ASSERT_EQ(::read(watch.get(), line.data(), line.size()), 8);
        constexpr int longest = 60'000;
        pollfd ended = {watch.get(), 0, 0};
        EXPECT_EQ(::poll(&ended, 1, longest), 1);
        EXPECT_NE(ended.revents & POLLHUP, 0);
    }
    EXPECT_FALSE(hasChildren());
}

TEST_F(SystemCommandRunnerTest, AToolThatWantsTheTerminalIsNotStoppedForGood)
{
    // As a background process of the terminal it would be, and waited for.
    const std::string asking =
        program("read -r line; echo \"$line\"; read -r line </dev/tty || echo nobody to ask");
    int terminal = -1;
    const pid_t child = ::forkpty(&terminal, nullptr, nullptr, nullptr);
    if (child == 0) {
        ::alarm(60);
        ::_exit(run(asking) == "typed\nnobody to ask\n" ? 0 : 1);
    }
    ASSERT_EQ(::write(terminal, "typed\n", 6), 6);
    int status = -1;
    EXPECT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
    ::close(terminal);
}

TEST_F(SystemCommandRunnerTest, KnowsHowAChildEndedThoughTheProgramWasStartedIgnoringThat)
{
    const auto before = std::signal(SIGCHLD, SIG_IGN);
    restoreChildSignal();
    EXPECT_EQ(run(program("exit 3")), "status 3");
    // What somebody has installed on purpose stays.
    const auto handler = [](int /*signal*/) {};
    std::signal(SIGCHLD, handler);
    restoreChildSignal();
    EXPECT_EQ(std::signal(SIGCHLD, before), +handler);
}

} // namespace CleanCoreTests
