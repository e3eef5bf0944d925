#include "CleanCore/Rules/ResourceBundle.h"

#include "CleanCore/Support/FileDescriptor.h"
#include "CleanCore/Support/PathText.h"

#include <array>
#include <cerrno>
#include <dlfcn.h>
#include <fcntl.h>
#include <filesystem>
#include <link.h>
#include <sys/stat.h>
#include <system_error>
#include <utility>

namespace CleanCore::ResourceBundle {

namespace {

constexpr const char* bundleName = "CleanCore_CleanCore.bundle";
constexpr std::size_t largestFile = std::size_t{64} * 1024 * 1024;

/// Nothing for a relative path: it would name a folder below the current one, which may hold
/// anything.
std::optional<std::string> folderOf(const std::filesystem::path& file)
{
    return file.is_absolute() ? std::optional(PathText::parent(file.native())) : std::nullopt;
}

std::optional<std::string> folderOfExecutable()
{
    std::error_code error;
    return folderOf(std::filesystem::read_symlink("/proc/self/exe", error));
}

/// Nothing when this library is linked into the program: the loader then knows only the name that
/// the program was started by.
std::optional<std::string> folderOfLibrary()
{
    Dl_info info = {};
    void* library = nullptr;
    if (::dladdr1(reinterpret_cast<const void*>(&path), &info, &library, RTLD_DL_LINKMAP) == 0 ||
        library == nullptr) {
        return std::nullopt;
    }
    const std::filesystem::path file = static_cast<const link_map*>(library)->l_name;
    std::error_code error;
    return file.is_absolute() ? folderOf(std::filesystem::canonical(file, error)) : std::nullopt;
}

bool isFolder(const std::string& path)
{
    struct stat status = {};
    return ::stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

std::string find()
{
    const std::optional<std::string> executable = folderOfExecutable();
    const std::optional<std::string> library = folderOfLibrary();
    const std::pair<const std::optional<std::string>&, const char*> places[] = {
        {executable, "../share/zorvane"},
        {library, "../share/zorvane"},
        {library, ""},
        {executable, ""}};
    for (const auto& [folder, below] : places) {
        if (!folder) {
            continue;
        }
        std::string candidate =
            PathText::standardized(PathText::join(PathText::join(*folder, below), bundleName));
        if (isFolder(candidate)) {
            return candidate;
        }
    }
    throw Missing();
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
