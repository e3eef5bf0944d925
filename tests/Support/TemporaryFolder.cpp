#include "tests/Support/TemporaryFolder.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <vector>

namespace CleanCoreTests {

namespace fs = std::filesystem;

namespace {

void check(bool isOk, const std::string& path)
{
    if (!isOk) {
        throw std::system_error(errno, std::generic_category(), path);
    }
}

/// Gives back what keeps a folder from being removed.
void openUp(const fs::path& folder)
{
    ::chmod(folder.c_str(), S_IRWXU);
    std::error_code ignored;
    for (const auto& entry : fs::directory_iterator(folder, ignored)) {
        if (entry.is_directory(ignored) && !entry.is_symlink(ignored)) {
            openUp(entry.path());
        }
    }
}

std::string line(const fs::path& path, const std::string& relative)
{
    struct stat status = {};
    check(::lstat(path.c_str(), &status) == 0, path);
    std::string text =
        relative + '|' + std::to_string(status.st_mode) + '|' + std::to_string(status.st_uid);
    if (!S_ISDIR(status.st_mode)) {
        text += '|' + std::to_string(status.st_mtim.tv_sec) + '.' +
                std::to_string(status.st_mtim.tv_nsec) + '|' + std::to_string(status.st_blocks);
    }
    if (S_ISLNK(status.st_mode)) {
        text += '|' + fs::read_symlink(path).string();
    } else if (S_ISREG(status.st_mode)) {
        std::ifstream file(path, std::ios::binary);
        text += '|' + std::string(std::istreambuf_iterator<char>(file), {});
    }
    return text + '\n';
}

} // namespace

TemporaryFolder::TemporaryFolder(const std::string& below)
{
    std::string pattern = fs::canonical(below).string() + "/zorvane-test-XXXXXX";
    check(::mkdtemp(pattern.data()) != nullptr, pattern);
    m_path = pattern;
}

TemporaryFolder::~TemporaryFolder()
{
    openUp(m_path);
    std::error_code ignored;
    fs::remove_all(m_path, ignored);
}

std::string TemporaryFolder::path(std::string_view relative) const
{
    return relative.empty() ? m_path : m_path + '/' + std::string(relative);
}

std::string TemporaryFolder::makeFolder(std::string_view relative) const
{
    fs::create_directories(path(relative));
    return path(relative);
}

std::string TemporaryFolder::makeFile(std::string_view relative, std::string_view content) const
{
    const fs::path file = path(relative);
    fs::create_directories(file.parent_path());
    std::ofstream stream(file, std::ios::binary);
    stream << content;
    stream.close();
    check(stream.good(), file);
    return file;
}

std::string TemporaryFolder::makeLink(std::string_view relative, const std::string& target) const
{
    const fs::path link = path(relative);
    fs::create_directories(link.parent_path());
    fs::create_symlink(target, link);
    return link;
}

void TemporaryFolder::setTime(std::string_view relative, std::int64_t seconds,
                              long nanoseconds) const
{
    const timespec times[] = {{seconds, nanoseconds}, {seconds, nanoseconds}};
    check(::utimensat(AT_FDCWD, path(relative).c_str(), times, AT_SYMLINK_NOFOLLOW) == 0,
          path(relative));
}

void TemporaryFolder::setMode(std::string_view relative, unsigned mode) const
{
    check(::chmod(path(relative).c_str(), mode) == 0, path(relative));
}

bool TemporaryFolder::has(std::string_view relative) const
{
    struct stat status = {};
    return ::lstat(path(relative).c_str(), &status) == 0;
}

std::string snapshot(const std::string& folder)
{
    std::vector<std::string> relatives;
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        relatives.push_back(fs::relative(entry.path().parent_path(), folder).string() + '/' +
                            entry.path().filename().string());
    }
    std::sort(relatives.begin(), relatives.end());
    std::string text;
    for (const std::string& relative : relatives) {
        text += line(fs::path(folder) / relative, relative);
    }
    return text;
}

} // namespace CleanCoreTests
