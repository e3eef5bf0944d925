#include "tests/Support/TemporaryFolder.h"

#include "tests/Support/TreeText.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <functional>
#include <sstream>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <vector>

namespace CleanCoreTests {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view fileContent = "content";

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

/// An entry, by its path in the tree.
using Visitor = std::function<void(const std::string& relative, const fs::path& path,
                                   const struct stat& status, bool isEmpty)>;

/// Visits everything below a folder in the order of the names, a folder before what is in it. A
/// folder that cannot be read counts as empty.
void visitTree(const fs::path& folder, const std::string& prefix, const Visitor& visit)
{
    std::vector<std::string> names;
    std::error_code unreadable;
    for (const auto& entry : fs::directory_iterator(folder, unreadable)) {
        names.push_back(entry.path().filename());
    }
    std::sort(names.begin(), names.end());
    for (const std::string& name : names) {
        const fs::path path = folder / name;
        struct stat status = {};
        check(::lstat(path.c_str(), &status) == 0, path);
        const bool isFolder = S_ISDIR(status.st_mode);
        std::error_code error;
        visit(prefix + name, path, status, !isFolder || fs::is_empty(path, error) || error);
        if (isFolder) {
            visitTree(path, prefix + name + '/', visit);
        }
    }
}

/// An entry as the text of a tree tells it.
std::string entryText(const std::string& relative, const fs::path& path, const struct stat& status,
                      const std::string& root)
{
    std::string text = quoted(relative);
    mode_t expected = S_IRUSR | S_IWUSR;
    if (S_ISLNK(status.st_mode)) {
        const std::string target = fs::read_symlink(path);
        return text + "->" +
               quoted(target.starts_with(root) ? '~' + target.substr(root.size()) : target);
    }
    if (S_ISDIR(status.st_mode)) {
        text += '/';
        expected |= S_IXUSR;
    } else if (!S_ISREG(status.st_mode)) {
        text += S_ISFIFO(status.st_mode) ? '|' : '?';
    } else if (const auto size = status.st_size; size != static_cast<off_t>(fileContent.size())) {
        text += ':' + (size % 1024 == 0 && size > 0 ? std::to_string(size / 1024) + 'k'
                                                    : std::to_string(size));
    }
    if ((status.st_mode & expected) != expected) {
        std::ostringstream mode;
        mode << "=0" << std::oct << (status.st_mode & 07777U);
        text += mode.str();
    }
    return text;
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

void TemporaryFolder::make(std::string_view tree, CleanCore::Timestamp now) const
{
    using enum TreeTextEntry::Kind;
    const std::vector<TreeTextEntry> entries = treeEntries(tree);
    for (const TreeTextEntry& entry : entries) {
        const std::string where = path(entry.path);
        switch (entry.kind) {
        case file:
            makeFile(entry.path, entry.length
                                     ? std::string(static_cast<std::size_t>(*entry.length), 'x')
                                     : std::string(fileContent));
            break;
        case folder:
            makeFolder(entry.path);
            break;
        case link:
            if (fs::is_symlink(where)) {
                remove(entry.path);
            }
            makeLink(entry.path, entry.target.starts_with('~') ? m_path + entry.target.substr(1)
                                                               : entry.target);
            break;
        case twin:
            fs::create_directories(fs::path(where).parent_path());
            fs::create_hard_link(path(entry.target), where);
            break;
        case pipe:
            fs::create_directories(fs::path(where).parent_path());
            check(::mkfifo(where.c_str(), S_IRUSR | S_IWUSR) == 0, where);
            break;
        }
    }
    for (auto entry = entries.rbegin(); entry != entries.rend(); ++entry) {
        if (entry->age) {
            const CleanCore::Timestamp time = now - *entry->age;
            const auto seconds = std::chrono::floor<std::chrono::seconds>(time);
            setTime(entry->path, seconds.time_since_epoch().count(), (time - seconds).count());
        }
        if (entry->mode) {
            setMode(entry->path, *entry->mode);
        }
    }
}

std::string TemporaryFolder::tree(std::string_view below) const
{
    std::string text;
    visitTree(path(below), "", [&](auto& relative, auto& path, auto& status, bool isEmpty) {
        // A folder with something in it is told by that, if there is no more to tell of it.
        const std::string own = entryText(relative, path, status, m_path);
        if (isEmpty || !own.ends_with('/')) {
            text += (text.empty() ? "" : " ") + own;
        }
    });
    return text;
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

void TemporaryFolder::remove(std::string_view relative) const
{
    fs::remove_all(path(relative));
}

void TemporaryFolder::move(std::string_view from, std::string_view to) const
{
    fs::rename(path(from), path(to));
}

bool TemporaryFolder::has(std::string_view relative) const
{
    struct stat status = {};
    return ::lstat(path(relative).c_str(), &status) == 0;
}

std::string snapshot(const std::string& folder)
{
    std::ostringstream text;
    visitTree(folder, "", [&](auto& relative, auto& path, auto& status, bool) {
        text << relative << '|' << status.st_mode << '|' << status.st_uid << '|';
        if (!S_ISDIR(status.st_mode)) {
            text << status.st_mtim.tv_sec << '.' << status.st_mtim.tv_nsec << '|'
                 << status.st_blocks << '|';
        }
        if (S_ISLNK(status.st_mode)) {
            text << fs::read_symlink(path).native();
        } else if (S_ISREG(status.st_mode) && status.st_size > 0) {
            text << std::ifstream(path, std::ios::binary).rdbuf();
            text.clear();
        }
        text << '\n';
    });
    return text.str();
}

} // namespace CleanCoreTests
