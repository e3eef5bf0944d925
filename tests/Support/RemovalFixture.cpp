#include "tests/Support/RemovalFixture.h"

#include "CleanCore/Support/TaskPool.h"
#include "tests/Support/Table.h"

#include <fstream>
#include <gmock/gmock.h>
#include <linux/capability.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace CleanCoreTests {

RemovalFixture::RemovalFixture(const std::string& below) : home(below)
{
    // Names that the attacks use inside the base: a redirected removal would find them here.
    home.make("Documents/canary Documents/entry/canary Documents/entry/deep/canary Documents/0 "
              "Documents/1");
    m_canaries = words(home.tree("Documents"));
}

std::unique_ptr<CleanCore::LinuxRemoval>
RemovalFixture::beginRemoval(CleanCore::PinMethod method) const
{
    return std::make_unique<CleanCore::LinuxRemoval>(
        home.path(), std::vector<std::string>{documents}, std::nullopt,
        std::make_shared<CleanCore::TaskPool>(), method);
}

int RemovalFixture::remove(const std::string& relative) const
{
    return beginRemoval()->remove(base, home.path(relative), std::nullopt).error;
}

void RemovalFixture::expectCanaries() const
{
    EXPECT_THAT(words(home.tree("Documents")), testing::IsSupersetOf(m_canaries));
}

void inChildProcess(const std::function<void()>& body)
{
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        body();
        ::_exit(testing::Test::HasFailure() ? 1 : 0);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << "the child failed: " << status;
}

void inMountNamespace(const std::function<void()>& body)
{
    inChildProcess([&] {
        const auto user = std::to_string(::getuid());
        const auto group = std::to_string(::getgid());
        ASSERT_EQ(::unshare(CLONE_NEWUSER | CLONE_NEWNS), 0) << "user namespaces are needed here";
        std::ofstream("/proc/self/setgroups") << "deny";
        std::ofstream("/proc/self/uid_map") << user << ' ' << user << " 1";
        std::ofstream("/proc/self/gid_map") << group << ' ' << group << " 1";
        ASSERT_EQ(::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr), 0);
        body();
    });
}

void dropCapabilities()
{
    __user_cap_header_struct header = {_LINUX_CAPABILITY_VERSION_3, 0};
    __user_cap_data_struct none[_LINUX_CAPABILITY_U32S_3] = {};
    ASSERT_EQ(::syscall(SYS_capset, &header, none), 0);
}

void bindMount(const std::string& what, const std::string& where)
{
    ASSERT_EQ(::mount(what.c_str(), where.c_str(), nullptr, MS_BIND, nullptr), 0) << where;
}

void makeFiles(const TemporaryFolder& folder, const std::string& relative, std::size_t count)
{
    const std::string path = folder.makeFolder(relative);
    for (std::size_t i = 0; i < count; ++i) {
        std::ofstream(path + '/' + std::to_string(i));
    }
}

} // namespace CleanCoreTests
