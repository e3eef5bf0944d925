#include "CleanCore/Reclaim/OpenPrograms.h"

#include "CleanCore/FileSystem/Descriptors.h"
#include "CleanCore/FileSystem/OpenWithoutLinks.h"
#include "CleanCore/FileSystem/Walking/DirectoryReader.h"

#include <algorithm>
#include <fcntl.h>
#include <fstream>
#include <optional>
#include <string_view>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

namespace CleanCore {

namespace {

/// The file that a link of proc(5) leads to. Never asks a server, which may be gone.
std::optional<FileKey> keyOf(int folder, const char* link)
{
    struct statx status;
    if (::statx(folder, link, AT_STATX_DONT_SYNC | AT_NO_AUTOMOUNT, STATX_INO, &status) != 0) {
        return std::nullopt;
    }
    return FileKey{makedev(status.stx_dev_major, status.stx_dev_minor), status.stx_ino};
}

template <typename Visit>
void forEachName(int folder, Visit visit)
{
    DirectoryReader reader;
    while (folder >= 0 && reader.readBatch(folder) > 0) {
        reader.forEach([&](const char* name) {
            visit(name);
            return true;
        });
    }
}

/// The inode of a line of /proc/PID/maps: "address perms offset device inode path"; 0 without one.
std::uint64_t inodeOfMapping(std::string_view line)
{
    for (int field = 0; field < 4; ++field) {
        line.remove_prefix(std::min(line.find(' '), line.size() - 1) + 1);
    }
    std::uint64_t inode = 0;
    for (const char digit : line.substr(0, line.find(' '))) {
        inode =
            digit >= '0' && digit <= '9' ? inode * 10 + static_cast<std::uint64_t>(digit - '0') : 0;
    }
    return inode;
}

/// Visits what the process has open, runs and has mapped.
template <typename Visit>
void forEachFile(int process, const std::string& processPath, const std::set<std::uint64_t>& inodes,
                 Visit visit)
{
    const FileDescriptor descriptors = openFolder(process, "fd");
    forEachName(descriptors.get(),
                [&](const char* name) { visit(keyOf(descriptors.get(), name)); });
    visit(keyOf(process, "exe"));
    std::ifstream mappings(processPath + "/maps");
    for (std::string line; std::getline(mappings, line);) {
        // The device of a mapping is not always that of the file, so its path is asked.
        const std::size_t path = line.find('/');
        if (path != std::string::npos && inodes.contains(inodeOfMapping(line))) {
            visit(keyOf(AT_FDCWD, line.c_str() + path));
        }
    }
}

} // namespace

std::map<FileKey, std::set<std::string>> openPrograms(const std::set<FileKey>& files)
{
    std::map<FileKey, std::set<std::string>> programs;
    std::set<std::uint64_t> inodes;
    std::ranges::transform(files, std::inserter(inodes, inodes.end()), &FileKey::inode);
    const FileDescriptor processes = openFolder(AT_FDCWD, "/proc");
    const std::string own = std::to_string(::getpid());
    forEachName(processes.get(), [&](const char* id) {
        if (*id < '0' || *id > '9' || own == id) {
            return;
        }
        const std::string path = std::string("/proc/") + id;
        const FileDescriptor process = openFolder(processes.get(), id);
        forEachFile(process.get(), path, inodes, [&](const std::optional<FileKey>& file) {
            if (file && files.contains(*file)) {
                std::string name;
                std::ifstream command(path + "/comm");
                std::getline(command, name);
                programs[*file].insert(name);
            }
        });
    });
    return programs;
}

} // namespace CleanCore
