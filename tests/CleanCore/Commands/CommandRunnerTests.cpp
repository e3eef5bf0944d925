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
#include <sys/stat.h>
#include <sys/wait.h>
#include <system_error>
#include <thread>
#include <unistd.h>

using namespace CleanCore;

namespace {

using Arguments = std::vector<std::string>;

/// Small programs of the test's own, run through the real runner.
class SystemCommandRunnerTest : public testing::Test
{
protected:
    [[nodiscard]] std::string program(const std::string& body) const
    {
        const std::string name = "program " + std::to_string(++m_count);
        std::string path = m_folder.makeFile(name, "#!/bin/sh\n" + body + "\n");
        m_folder.setMode(name, 0755);
        return path;
    }

    /// The status that the run is reported to have failed with; 0 if it succeeded.
    [[nodiscard]] int failureStatus(const std::string& executable) const
    {
        try {
            static_cast<void>(m_runner.run(executable, {}));
            return 0;
        } catch (const CleanCoreError& error) {
            EXPECT_EQ(error, CleanCoreError::commandFailed(executable, error.status()));
            return error.status();
        }
    }

    CleanCoreTests::TemporaryFolder m_folder;
    SystemCommandRunner m_runner;

private:
    mutable int m_count = 0;
};

std::ptrdiff_t openDescriptors()
{
    const std::filesystem::directory_iterator entries("/proc/self/fd");
    return std::distance(begin(entries), end(entries));
}

/// What seq(1) prints.
std::string numbers(int first, int last)
{
    std::string lines;
    for (int number = first; number <= last; ++number) {
        lines += std::to_string(number) + "\n";
    }
    return lines;
}

bool hasChildren()
{
    return ::waitpid(-1, nullptr, WNOHANG) >= 0 || errno != ECHILD;
}

} // namespace

TEST_F(SystemCommandRunnerTest, ReturnsStandardOutputAloneAndNoneThatIsNotUtf8)
{
    EXPECT_EQ(m_runner.run(program("echo out; echo err >&2"), {}), "out\n");
    EXPECT_EQ(m_runner.run(program("printf 'ü\\000x'"), {}), std::string("ü\0x", 4));
    for (const char* bytes : {"ok\\377", "\\303", "\\300\\200", "\\355\\240\\200"}) {
        EXPECT_EQ(m_runner.run(program("printf '" + std::string(bytes) + "'"), {}), "") << bytes;
    }
}

TEST_F(SystemCommandRunnerTest, PassesArgumentsUnchanged)
{
    const Arguments arguments = {"system",  "{{json .}}", "",  "two words",
                                 "$HOME *", "a'b\"c",     "\n"};
    std::string expected;
    for (const std::string& argument : arguments) {
        expected += "[" + argument + "]";
    }
    EXPECT_EQ(m_runner.run(program("for a in \"$@\"; do printf '[%s]' \"$a\"; done"), arguments),
              expected);
}

TEST_F(SystemCommandRunnerTest, ReportsFailureByStatusAndBySignal)
{
    EXPECT_EQ(failureStatus(program("exit 255")), 255);
    EXPECT_EQ(failureStatus(program("echo lost; kill -KILL $$")), 128 + SIGKILL);
}

TEST_F(SystemCommandRunnerTest, ThrowsThePlatformsErrorWhenItCannotStart)
{
    const std::string notExecutable = m_folder.makeFile("plain", "#!/bin/sh\n");
    const std::string noFormat = m_folder.makeFile("text", "echo without an interpreter\n");
    m_folder.setMode("text", 0755);
    const std::vector<std::pair<std::string, int>> cases = {{m_folder.path("missing"), ENOENT},
                                                            {notExecutable, EACCES},
                                                            {m_folder.path(), EACCES},
                                                            {noFormat, ENOEXEC},
                                                            {std::string("/bin/sh\0x", 9), EINVAL}};
    for (const auto& [executable, error] : cases) {
        try {
            static_cast<void>(m_runner.run(executable, {}));
            ADD_FAILURE() << executable;
        } catch (const std::system_error& failure) {
            EXPECT_EQ(failure.code().value(), error) << executable;
        }
    }
    // Cut off at its null byte this would name another thing.
    EXPECT_THROW(static_cast<void>(m_runner.run(program("exit 0"), {std::string("a\0b", 3)})),
                 std::system_error);
}

TEST_F(SystemCommandRunnerTest, ReadsEverythingBeyondThePipesBuffer)
{
    EXPECT_EQ(m_runner.run(program("seq 50000"), {}), numbers(1, 50'000));
}

TEST_F(SystemCommandRunnerTest, ReadsWhatAGrandchildWritesAfterTheChildsEnd)
{
    // The grandchild writes only once its parent is gone.
    EXPECT_EQ(m_runner.run(program("parent=$$\n"
                                   "(while kill -0 $parent 2>/dev/null && "
                                   "! grep -q '^State:.Z' /proc/$parent/status 2>/dev/null; "
                                   "do :; done; echo late) &\n"
                                   "echo early"),
                           {}),
              "early\nlate\n");
}

TEST_F(SystemCommandRunnerTest, InheritsEnvironmentFolderAndInputButReadsInTheCLocale)
{
    ::setenv("ZORVANE_TEST", "kept value", 1);
    ::setenv("LC_ALL", "de_DE.UTF-8", 1);
    EXPECT_EQ(m_runner.run(program("echo \"$ZORVANE_TEST $LC_ALL\"; env | grep -c ^LC_ALL="), {}),
              "kept value C\n1\n");
    EXPECT_EQ(m_runner.run(program("pwd -P"), {}), std::filesystem::current_path().string() + "\n");

    const std::string input = m_folder.makeFile("input", "typed\n");
    const int saved = ::dup(STDIN_FILENO);
    const int file = ::open(input.c_str(), O_RDONLY | O_CLOEXEC);
    ::dup2(file, STDIN_FILENO);
    ::close(file);
    EXPECT_EQ(m_runner.run(program("cat"), {}), "typed\n");
    ::dup2(saved, STDIN_FILENO);
    ::close(saved);
}

TEST_F(SystemCommandRunnerTest, WorksWithAnyStandardStreamClosed)
{
    const std::string listing = program("read -r line && echo read; ls /proc/self/fd >/dev/null && "
                                        "echo out; echo err >&2");
    for (const int first : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        for (const int second : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
            std::vector<std::pair<int, int>> saved;
            for (const int stream : {first, second}) {
                saved.emplace_back(::fcntl(stream, F_DUPFD_CLOEXEC, 10), stream);
                ::close(stream);
            }
            std::string output;
            try {
                output = m_runner.run(listing, {});
            } catch (const std::exception& error) {
                output = error.what();
            }
            for (const auto& [copy, stream] : saved) {
                if (copy >= 0) {
                    ::dup2(copy, stream);
                    ::close(copy);
                }
            }
            if (first == STDIN_FILENO || second == STDIN_FILENO) {
                EXPECT_EQ(output, "out\n") << first << second;
            } else {
                EXPECT_TRUE(output.ends_with("out\n")) << first << second << output;
            }
        }
    }
}

TEST_F(SystemCommandRunnerTest, LeaksNoDescriptorIntoTheChild)
{
    // One that a careless library left without close-on-exec, far up.
    const int careless = ::fcntl(STDOUT_FILENO, F_DUPFD, 700);
    ASSERT_GE(careless, 700);
    // The shell's glob opens the folder itself, as one descriptor more.
    const std::string open = m_runner.run(program("cd /proc/$$/fd && echo *"), {});
    ::close(careless);
    EXPECT_EQ(open.find("700"), std::string::npos) << open;
    const std::string plain = m_runner.run(program("cd /proc/$$/fd && echo *"), {});
    EXPECT_EQ(open, plain);
    EXPECT_LE(std::count(plain.begin(), plain.end(), ' '), 4) << plain;
}

TEST_F(SystemCommandRunnerTest, GivesTheChildDefaultSignals)
{
    sigset_t all;
    sigset_t before;
    ::sigfillset(&all);
    ::pthread_sigmask(SIG_SETMASK, &all, &before);
    const auto pipeBefore = std::signal(SIGPIPE, SIG_IGN);
    const auto hangUpBefore = std::signal(SIGHUP, SIG_IGN);
    const std::string status = m_runner.run("/bin/cat", {"/proc/self/status"});
    std::signal(SIGPIPE, pipeBefore);
    std::signal(SIGHUP, hangUpBefore);
    ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
    EXPECT_NE(status.find("SigBlk:\t0000000000000000\n"), std::string::npos) << status;
    // Those above 31 that the C library keeps for itself do not count.
    const std::string ignored = status.substr(status.find("SigIgn:") + 7, 17);
    EXPECT_EQ(std::stoull(ignored, nullptr, 16) & 0x7fff'ffffU, 0U) << ignored;
}

TEST_F(SystemCommandRunnerTest, ServesManyThreadsAtOnce)
{
    constexpr int threads = 64;
    // Each child reports and waits to be let go, so that none can be done before another begins.
    const std::string arrived = m_folder.path("arrived");
    const std::string go = m_folder.path("go");
    ASSERT_EQ(::mkfifo(arrived.c_str(), 0600), 0);
    ASSERT_EQ(::mkfifo(go.c_str(), 0600), 0);
    const FileDescriptor arrivals(::open(arrived.c_str(), O_RDWR | O_CLOEXEC));
    const FileDescriptor gate(::open(go.c_str(), O_RDWR | O_CLOEXEC));
    const std::string waiting = program("echo >\"$1\"; read -r line <\"$2\"\n"
                                        "seq \"$3\" 2000\n"
                                        "exit $(($3 % 2))");
    std::atomic<int> succeeded = 0;
    std::atomic<int> failed = 0;
    {
        std::vector<std::jthread> running;
        running.reserve(threads);
        for (int index = 0; index < threads; ++index) {
            running.emplace_back([&, index] {
                const std::string name = std::to_string(index);
                const std::string expected = numbers(index, 2000);
                try {
                    succeeded += m_runner.run(waiting, {arrived, go, name}) == expected ? 1 : 0;
                } catch (const CleanCoreError& error) {
                    failed += error.status() == 1 ? 1 : 0;
                }
            });
        }
        for (char line = 0, count = 0; count < threads; ++count) {
            ASSERT_EQ(::read(arrivals.get(), &line, 1), 1);
        }
        const std::string permits(threads, '\n');
        ASSERT_EQ(::write(gate.get(), permits.data(), permits.size()), threads);
    }
    EXPECT_EQ(succeeded, threads / 2);
    EXPECT_EQ(failed, threads / 2);
    EXPECT_FALSE(hasChildren());
}

TEST_F(SystemCommandRunnerTest, LeavesNeitherZombiesNorDescriptorsAfterAThousandRuns)
{
    const std::string missing = m_folder.path("missing");
    const std::string killed = program("kill -KILL $$");
    std::stop_source source;
    const SystemCommandRunner stoppable(source.get_token());
    const std::ptrdiff_t before = openDescriptors();
    int failures = 0;
    for (int round = 0; round < 250; ++round) {
        EXPECT_EQ(stoppable.run("/bin/echo", {"x"}), "x\n");
        for (const std::string& executable : {std::string("/bin/false"), missing, killed}) {
            try {
                static_cast<void>(m_runner.run(executable, {}));
            } catch (const std::exception&) {
                ++failures;
            }
        }
    }
    EXPECT_EQ(failures, 750);
    EXPECT_EQ(openDescriptors(), before);
    EXPECT_FALSE(hasChildren());
}

TEST_F(SystemCommandRunnerTest, AStopRequestEndsWhateverTheChildHasStartedAndIgnores)
{
    const std::string alive = m_folder.path("alive");
    ASSERT_EQ(::mkfifo(alive.c_str(), 0600), 0);
    for (const char* const hanging :
         {"echo started >&9; exec sleep 600", "echo started >&9; exec sleep 600 >&-",
          // What keeps the output open is not waited for.
          "sleep 600 & echo started >&9; wait", "sleep 600 >&- & echo started >&9; wait",
          "(trap '' TERM INT HUP; echo started >&9; sleep 600) & wait",
          "trap '' TERM INT HUP; echo started >&9; while :; do sleep 600; done",
          "(sleep 600 &); echo started >&9; kill -STOP $$"}) {
        SCOPED_TRACE(hanging);
        const FileDescriptor watch(::open(alive.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
        std::stop_source source;
        const std::jthread stopper([&] {
            pollfd started = {watch.get(), POLLIN, 0};
            ::poll(&started, 1, -1);
            source.request_stop();
        });
        // Each of its processes holds the FIFO open until it ends.
        EXPECT_THROW(
            static_cast<void>(SystemCommandRunner(source.get_token())
                                  .run(program("exec 9>\"$1\"; " + std::string(hanging)), {alive})),
            std::exception);
        std::array<char, 16> line = {};
        ASSERT_EQ(::read(watch.get(), line.data(), line.size()), 8);
        constexpr int patience = 60'000;
        pollfd ended = {watch.get(), 0, 0};
        EXPECT_EQ(::poll(&ended, 1, patience), 1);
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
        constexpr unsigned patience = 60;
        ::alarm(patience);
        ::_exit(m_runner.run(asking, {}) == "typed\nnobody to ask\n" ? 0 : 1);
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
    EXPECT_EQ(failureStatus(program("exit 0")), 0);
    EXPECT_EQ(failureStatus(program("exit 3")), 3);
    // What somebody has installed on purpose stays.
    const auto handler = [](int /*signal*/) {};
    std::signal(SIGCHLD, handler);
    restoreChildSignal();
    EXPECT_EQ(std::signal(SIGCHLD, before), +handler);
}

TEST_F(SystemCommandRunnerTest, StartsNothingAfterAStopRequest)
{
    std::stop_source source;
    source.request_stop();
    EXPECT_THROW(static_cast<void>(SystemCommandRunner(source.get_token())
                                       .run(program("touch " + m_folder.path("ran")), {})),
                 std::system_error);
    EXPECT_FALSE(m_folder.has("ran"));
}
