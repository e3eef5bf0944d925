#include "CleanCore/Commands/Running/ChildProcess.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <spawn.h>
#include <string_view>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

namespace CleanCore {

namespace {

void require(int error, const std::string& what)
{
    if (error != 0) {
        throw std::system_error(error, std::generic_category(), what);
    }
}

class FileActions
{
public:
    FileActions(int output, const ChildSettings& settings)
    {
        require(::posix_spawn_file_actions_init(&m_actions), "posix_spawn_file_actions_init");
        if (const int error = add(output, settings); error != 0) {
            ::posix_spawn_file_actions_destroy(&m_actions);
            require(error, "posix_spawn_file_actions");
        }
    }
    FileActions(const FileActions&) = delete;
    FileActions& operator=(const FileActions&) = delete;
    ~FileActions() { ::posix_spawn_file_actions_destroy(&m_actions); }

    [[nodiscard]] const posix_spawn_file_actions_t* get() const { return &m_actions; }

private:
    /// Returns 0 or errno.
    [[nodiscard]] int add(int output, const ChildSettings& settings)
    {
        int error = ::posix_spawn_file_actions_adddup2(&m_actions, output, STDOUT_FILENO);
        if (error == 0) {
            error = settings.errors < 0 ? addNull(STDERR_FILENO, O_WRONLY)
                                        : ::posix_spawn_file_actions_adddup2(
                                              &m_actions, settings.errors, STDERR_FILENO);
        }
        if (error == 0 && settings.isWithoutInput) {
            error = addNull(STDIN_FILENO, O_RDONLY);
        }
        if (error == 0 && !settings.folder.empty()) {
            error = ::posix_spawn_file_actions_addchdir_np(&m_actions, settings.folder.c_str());
        }
        // Close-on-exec covers only our own descriptors; libraries may have opened others.
        return error == 0
                   ? ::posix_spawn_file_actions_addclosefrom_np(&m_actions, STDERR_FILENO + 1)
                   : error;
    }

    [[nodiscard]] int addNull(int descriptor, int flags)
    {
        return ::posix_spawn_file_actions_addopen(&m_actions, descriptor, "/dev/null", flags, 0);
    }

    posix_spawn_file_actions_t m_actions = {};
};

/// Our threads block signals and our programs ignore some; a child must not inherit that.
/// posix_spawn() returns once the child runs its program, so its session exists by then.
class OwnSession
{
public:
    OwnSession()
    {
        require(::posix_spawnattr_init(&m_attributes), "posix_spawnattr_init");
        sigset_t none;
        sigset_t all;
        ::sigemptyset(&none);
        ::sigfillset(&all);
        ::posix_spawnattr_setsigmask(&m_attributes, &none);
        ::posix_spawnattr_setsigdefault(&m_attributes, &all);
        ::posix_spawnattr_setflags(&m_attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF |
                                                      POSIX_SPAWN_SETSID);
    }
    OwnSession(const OwnSession&) = delete;
    OwnSession& operator=(const OwnSession&) = delete;
    ~OwnSession() { ::posix_spawnattr_destroy(&m_attributes); }

    [[nodiscard]] const posix_spawnattr_t* get() const { return &m_attributes; }

private:
    posix_spawnattr_t m_attributes = {};
};

/// A null-terminated list for the kernel; valid as long as the strings.
std::vector<char*> pointersTo(std::vector<std::string>& texts)
{
    std::vector<char*> pointers;
    pointers.reserve(texts.size() + 1);
    for (std::string& text : texts) {
        pointers.push_back(text.data());
    }
    pointers.push_back(nullptr);
    return pointers;
}

std::vector<std::string> childEnvironment(const ChildSettings& settings)
{
    std::vector<std::string> variables = {"LC_ALL=" + settings.locale};
    for (char** variable = environ; variable != nullptr && *variable != nullptr; ++variable) {
        const std::string_view text(*variable);
        const bool isHidden =
            !settings.hiddenVariables.empty() && text.starts_with(settings.hiddenVariables);
        if (!text.starts_with("LC_ALL=") && !isHidden) {
            variables.emplace_back(text);
        }
    }
    return variables;
}

} // namespace

ChildProcess ChildProcess::start(const std::string& executable,
                                 const std::vector<std::string>& arguments, int output,
                                 const ChildSettings& settings)
{
    std::vector<std::string> words = {executable};
    words.insert(words.end(), arguments.begin(), arguments.end());
    for (const std::string& word : words) {
        // The kernel would cut the argument off there.
        require(word.find('\0') != std::string::npos ? EINVAL : 0, executable);
    }
    std::vector<std::string> variables = childEnvironment(settings);
    const FileActions actions(output, settings);
    const OwnSession session;
    pid_t id = -1;
    require(::posix_spawn(&id, executable.c_str(), actions.get(), session.get(),
                          pointersTo(words).data(), pointersTo(variables).data()),
            executable);
    return ChildProcess(id);
}

ChildProcess::~ChildProcess()
{
    if (m_id > 0) {
        kill();
        while (::waitpid(m_id, nullptr, 0) < 0 && errno == EINTR) {
        }
    }
}

void ChildProcess::kill() const
{
    sendSignal(SIGKILL);
}

void ChildProcess::interrupt() const
{
    sendSignal(SIGINT);
}

void ChildProcess::sendSignal(int number) const
{
    siginfo_t info = {};
    // Where SIGCHLD is ignored, the child may be gone and its id reused.
    if (::waitid(P_PID, static_cast<id_t>(m_id), &info, WEXITED | WNOHANG | WNOWAIT) == 0) {
        ::kill(-m_id, number);
    }
}

void ChildProcess::waitForEnd() const
{
    siginfo_t info = {};
    while (::waitid(P_PID, static_cast<id_t>(m_id), &info, WEXITED | WNOWAIT) != 0) {
        require(errno == EINTR ? 0 : errno, "waitid");
    }
}

int ChildProcess::collect()
{
    int status = 0;
    while (::waitpid(m_id, &status, 0) < 0) {
        require(errno == EINTR ? 0 : errno, "waitpid");
    }
    m_id = -1;
    constexpr int signalBase = 128;
    return WIFSIGNALED(status) ? signalBase + WTERMSIG(status) : WEXITSTATUS(status);
}

} // namespace CleanCore
