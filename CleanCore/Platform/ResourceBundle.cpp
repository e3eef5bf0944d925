#include "CleanCore/Platform/ResourceBundle.h"

#include "CleanCore/Support/FileDescriptor.h"
#include "CleanCore/Support/PathText.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <system_error>

namespace CleanCore::ResourceBundle {

namespace {

constexpr const char* bundleName = "CleanCore_CleanCore.bundle";
constexpr int exitStatus = 3;
constexpr std::size_t largestFile = std::size_t{64} * 1024 * 1024;

std::string resolved(const char* path)
{
    char* const real = ::realpath(path, nullptr);
    std::string result = real != nullptr ? real : "";
    std::free(real);
    return result;
}

std::string folderOfExecutable()
{
    return PathText::parent(resolved("/proc/self/exe"));
}

std::string folderOfLibrary()
{
    Dl_info info = {};
    if (::dladdr(reinterpret_cast<const void*>(&path), &info) == 0 || info.dli_fname == nullptr) {
        return {};
    }
    return PathText::parent(resolved(info.dli_fname));
}

bool isFolder(const std::string& path)
{
    struct stat status = {};
    return ::stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

std::string find()
{
    const std::string executable = folderOfExecutable();
    const std::string library = folderOfLibrary();
    for (const std::string& parent :
         {executable + "/../share/zorvane", library + "/../share/zorvane", library, executable}) {
        std::string candidate = PathText::standardized(PathText::join(parent, bundleName));
        if (isFolder(candidate)) {
            return candidate;
        }
    }
    std::fputs("unable to find bundle named CleanCore_CleanCore\n", stderr);
    std::_Exit(exitStatus);
}

} // namespace

const std::string& path()
{
    static const std::string found = find();
    return found;
}

std::optional<std::string> resource(const std::string& name, const std::string& extension)
{
    std::string file = PathText::join(path(), name + "." + extension);
    struct stat status = {};
    if (::stat(file.c_str(), &status) != 0) {
        return std::nullopt;
    }
    return file;
}

std::string readFile(const std::string& path)
{
    const auto fail = [&] { throw std::system_error(errno, std::generic_category(), path); };
    const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    struct stat status = {};
    if (!file.isOpen() || ::fstat(file.get(), &status) != 0) {
        fail();
    }
    if (!S_ISREG(status.st_mode)) {
        errno = S_ISDIR(status.st_mode) ? EISDIR : EINVAL;
        fail();
    }
    std::string bytes;
    std::array<char, 65536> chunk = {};
    for (;;) {
        const ssize_t count = ::read(file.get(), chunk.data(), chunk.size());
        if (count == 0) {
            return bytes;
        }
        if (bytes.size() > largestFile) {
            errno = EFBIG;
            fail();
        }
        if (count > 0) {
            bytes.append(chunk.data(), static_cast<std::size_t>(count));
        } else if (errno != EINTR) {
            fail();
        }
    }
}

} // namespace CleanCore::ResourceBundle
