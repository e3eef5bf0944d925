#include "tests/Support/TemporaryFolder.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <regex>
#include <sstream>
#include <stdexcept>
#include <sys/stat.h>
#include <system_error>
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

struct stat statusOf(const fs::path& path)
{
    struct stat status = {};
    check(::lstat(path.c_str(), &status) == 0, path);
    return status;
}

/// Everything below a folder in the order of the names, a folder before what is in it. A folder
/// that cannot be read counts as empty.
std::vector<fs::path> pathsBelow(const fs::path& folder)
{
    std::vector<fs::path> paths;
    std::error_code unreadable;
    for (const auto& entry : fs::recursive_directory_iterator(
             folder, fs::directory_options::skip_permission_denied, unreadable)) {
        paths.push_back(entry.path());
    }
    std::sort(paths.begin(), paths.end());
    return paths;
}

std::string unquoted(std::string name)
{
    std::erase(name, '\'');
    return name;
}

CleanCore::Timestamp::duration ageOf(const std::csub_match& days, const std::csub_match& fraction)
{
    const auto age = std::abs(std::stoll(days)) * std::chrono::hours(24) +
                     std::chrono::nanoseconds(fraction.matched ? std::stoll(fraction) : 0);
    return *days.first == '-' ? -age : age;
}

} // namespace

TemporaryFolder::TemporaryFolder(const std::string& below)
    : m_path(fs::canonical(below).string() + "/zorvane-test-XXXXXX")
{
    check(::mkdtemp(m_path.data()) != nullptr, m_path);
}

TemporaryFolder::~TemporaryFolder()
{
    std::error_code ignored;
    ::chmod(m_path.c_str(), S_IRWXU);
    // A folder is opened up before it is entered.
    for (fs::recursive_directory_iterator entry(m_path, ignored), end; entry != end;
         entry.increment(ignored)) {
        if (entry->symlink_status(ignored).type() == fs::file_type::directory) {
            ::chmod(entry->path().c_str(), S_IRWXU);
        }
    }
    fs::remove_all(m_path, ignored);
}

void TemporaryFolder::make(std::string_view tree, CleanCore::Timestamp now) const
{
    const std::string name = "((?:[^\\s':|@=-]|-(?!>)|'[^']*')+)";
    static const std::regex pattern("\\s*" + name + "(?:(->|==)" + name +
                                    "|(\\|)|:(\\d+)(k?))?(?:=([0-7]+))?"
                                    "(?:@(-?\\d+)d(?:(\\d+)ns)?)?(?:\\s+|$)");
    std::vector<std::cmatch> entries;
    const char* const end = tree.data() + tree.size();
    for (const char* at = tree.data(); at != end; at = entries.back()[0].second) {
        std::cmatch& entry = entries.emplace_back();
        if (!std::regex_search(at, end, entry, pattern, std::regex_constants::match_continuous)) {
            throw std::invalid_argument("no tree from here on: " + std::string(at, end));
        }
        const std::string path = unquoted(entry[1]);
        const std::string target = unquoted(entry[3]);
        const fs::path where = this->path(path);
        fs::create_directories(where.parent_path());
        if (entry[2] == "->") {
            if (fs::is_symlink(where)) {
                fs::remove(where);
            }
            fs::create_symlink(target.starts_with('~') ? m_path + target.substr(1) : target, where);
        } else if (entry[2] == "==") {
            fs::create_hard_link(this->path(target), where);
        } else if (entry[4].matched) {
            check(::mkfifo(where.c_str(), S_IRUSR | S_IWUSR) == 0, where);
        } else if (entry[5].matched) {
            makeFile(path, std::string(std::stoul(entry[5]) * (entry[6] == "k" ? 1024 : 1), 'x'));
        } else if (!path.ends_with('/')) {
            makeFile(path);
        }
    }
    for (auto entry = entries.rbegin(); entry != entries.rend(); ++entry) {
        if ((*entry)[8].matched) {
            setTime(unquoted((*entry)[1]), now - ageOf((*entry)[8], (*entry)[9]));
        }
        if ((*entry)[7].matched) {
            setMode(unquoted((*entry)[1]), static_cast<unsigned>(std::stoul((*entry)[7], {}, 8)));
        }
    }
}

std::string TemporaryFolder::tree(std::string_view below) const
{
    std::ostringstream text;
    const fs::path top = path(below);
    const std::vector<fs::path> all = pathsBelow(top);
    for (std::size_t i = 0; i < all.size(); ++i) {
        const struct stat status = statusOf(all[i]);
        mode_t expected = S_IRUSR | S_IWUSR;
        std::string kind;
        if (S_ISLNK(status.st_mode)) {
            const std::string target = fs::read_symlink(all[i]);
            kind =
                "->" + (target.starts_with(m_path) ? '~' + target.substr(m_path.size()) : target);
            expected = 0;
        } else if (S_ISDIR(status.st_mode)) {
            kind = "/";
            expected |= S_IXUSR;
        } else if (!S_ISREG(status.st_mode)) {
            kind = S_ISFIFO(status.st_mode) ? "|" : "?";
        } else if (const auto size = status.st_size; size != 7) {
            kind = ':' + (size % 1024 == 0 && size > 0 ? std::to_string(size / 1024) + 'k'
                                                       : std::to_string(size));
        }
        const bool isUsual = (status.st_mode & expected) == expected;
        // A folder with something in it is told by that, if there is no more to tell of it.
        if (!isUsual || kind != "/" || i + 1 == all.size() || all[i + 1].parent_path() != all[i]) {
            text << (text.tellp() == 0 ? "" : " ") << all[i].lexically_relative(top).native()
                 << kind;
            if (!isUsual) {
                text << "=0" << std::oct << (status.st_mode & 07777U);
            }
        }
    }
    return text.str();
}

std::string TemporaryFolder::makeFile(std::string_view relative, std::string_view content) const
{
    const fs::path file = path(relative);
    fs::create_directories(file.parent_path());
    std::ofstream stream(file, std::ios::binary);
    check((stream << content).flush().good(), file);
    return file;
}

void TemporaryFolder::setTime(std::string_view relative, CleanCore::Timestamp time) const
{
    const auto seconds = std::chrono::floor<std::chrono::seconds>(time);
    const timespec both = {seconds.time_since_epoch().count(), (time - seconds).count()};
    const timespec times[] = {both, both};
    check(::utimensat(AT_FDCWD, path(relative).c_str(), times, AT_SYMLINK_NOFOLLOW) == 0,
          path(relative));
}

std::string snapshot(const std::string& folder)
{
    std::ostringstream text;
    for (const fs::path& path : pathsBelow(folder)) {
        const struct stat status = statusOf(path);
        text << path.native() << '|' << status.st_mode << '|' << status.st_uid << '|';
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
    }
    return text.str();
}

} // namespace CleanCoreTests
