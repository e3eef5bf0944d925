#pragma once

#include <cstdlib>
#include <string>
#include <sys/xattr.h>
#include <unistd.h>

namespace CleanCoreTests {

/// A number from the environment, for a longer run than the everyday one.
[[nodiscard]] inline int setting(const char* variable, int everyday)
{
    const char* const value = std::getenv(variable);
    return value != nullptr ? std::atoi(value) : everyday;
}

/// Where the many small files of a run go: the folder named by ZORVANE_RELIABILITY_FOLDER, else
/// memory, if it can hold a marker there (Linux 6.6), else the temporary folder.
[[nodiscard]] inline std::string reliabilityFolder()
{
    if (const char* const value = std::getenv("ZORVANE_RELIABILITY_FOLDER")) {
        return value;
    }
    std::string path = "/dev/shm/zorvane-probe-XXXXXX";
    const int file = ::mkstemp(path.data());
    const bool holdsMarkers = file >= 0 && ::fsetxattr(file, "user.probe", "1", 1, 0) == 0;
    if (file >= 0) {
        ::close(file);
        ::unlink(path.c_str());
    }
    return holdsMarkers ? "/dev/shm" : "/tmp";
}

} // namespace CleanCoreTests
