#include "CleanCore/Commands/Running/WriteConfinement.h"

#include "CleanCore/Support/FileDescriptor.h"

#include <cstdint>
#include <fcntl.h>
#include <linux/landlock.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace CleanCore {

namespace {

// Rights that came after the first version of the interface.
constexpr std::uint64_t moveBetweenFolders = std::uint64_t{1} << 13;
constexpr std::uint64_t truncate = std::uint64_t{1} << 14;

constexpr std::uint64_t change = LANDLOCK_ACCESS_FS_WRITE_FILE | LANDLOCK_ACCESS_FS_REMOVE_DIR |
                                 LANDLOCK_ACCESS_FS_REMOVE_FILE | LANDLOCK_ACCESS_FS_MAKE_CHAR |
                                 LANDLOCK_ACCESS_FS_MAKE_DIR | LANDLOCK_ACCESS_FS_MAKE_REG |
                                 LANDLOCK_ACCESS_FS_MAKE_SOCK | LANDLOCK_ACCESS_FS_MAKE_FIFO |
                                 LANDLOCK_ACCESS_FS_MAKE_BLOCK | LANDLOCK_ACCESS_FS_MAKE_SYM;

bool allow(int rules, const char* path, std::uint64_t access)
{
    const FileDescriptor place(::open(path, O_PATH | O_CLOEXEC));
    landlock_path_beneath_attr rule = {};
    rule.allowed_access = access;
    rule.parent_fd = place.get();
    return place.isOpen() &&
           ::syscall(SYS_landlock_add_rule, rules, LANDLOCK_RULE_PATH_BENEATH, &rule, 0) == 0;
}

} // namespace

bool confineWritesOfThread(const std::string& path)
{
    const long version =
        ::syscall(SYS_landlock_create_ruleset, nullptr, 0, LANDLOCK_CREATE_RULESET_VERSION);
    if (version < 1) {
        return false;
    }
    std::uint64_t changes = change;
    changes |= version >= 2 ? moveBetweenFolders : 0;
    changes |= version >= 3 ? truncate : 0;
    landlock_ruleset_attr attributes = {};
    attributes.handled_access_fs = changes | LANDLOCK_ACCESS_FS_EXECUTE;
    const FileDescriptor rules(static_cast<int>(::syscall(
        SYS_landlock_create_ruleset, &attributes, sizeof(attributes.handled_access_fs), 0)));
    if (!rules.isOpen() || !allow(rules.get(), path.c_str(), changes) ||
        !allow(rules.get(), "/dev/null", LANDLOCK_ACCESS_FS_WRITE_FILE) ||
        !allow(rules.get(), "/usr", LANDLOCK_ACCESS_FS_EXECUTE)) {
        return false;
    }
    for (const char* const folder : {"/bin", "/lib", "/lib64"}) {
        // Often links to folders in /usr; a missing one is not needed.
        static_cast<void>(allow(rules.get(), folder, LANDLOCK_ACCESS_FS_EXECUTE));
    }
    return ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
           ::syscall(SYS_landlock_restrict_self, rules.get(), 0) == 0;
}

} // namespace CleanCore
