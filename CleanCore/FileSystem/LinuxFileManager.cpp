#include "CleanCore/FileSystem/LinuxFileManager.h"

#include "CleanCore/FileSystem/Descriptors.h"
#include "CleanCore/FileSystem/LinkResolver.h"
#include "CleanCore/FileSystem/Removing/LinuxRemoval.h"
#include "CleanCore/FileSystem/Walking/DirectoryReader.h"
#include "CleanCore/FileSystem/Walking/TreeWalk.h"
#include "CleanCore/Support/PathText.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/statvfs.h>
#include <system_error>
#include <utility>

namespace CleanCore {

LinuxFileManager::LinuxFileManager(UserFolders folders, std::optional<std::string> confinement,
                                   std::shared_ptr<TaskPool> pool)
    : m_folders(std::move(folders)), m_confinement(std::move(confinement)), m_pool(std::move(pool))
{
    if (m_confinement) {
        m_confinement = resolveSymbolicLinks(*m_confinement);
    }
}

FileDescriptor LinuxFileManager::open(const std::string& path, int flags) const
{
    const auto leadsThere = [&](const std::string& folder) {
        // Home may itself lie in such a folder, and stays reachable there.
        return PathText::isSameOrInside(path, folder) &&
               !(PathText::isSameOrInside(m_folders.home, folder) &&
                 PathText::isSameOrInside(path, m_folders.home));
    };
    if (path.find('\0') != std::string::npos ||
        std::ranges::any_of(m_folders.distrustedFolders, leadsThere)) {
        errno = ENOENT;
        return {};
    }
    // The path is judged before it is opened, so that nothing outside is even touched, and the open
    // file is judged again, in case a link was exchanged in between.
    if (m_confinement && !PathText::isSameOrInside(resolveSymbolicLinks(path), *m_confinement)) {
        errno = ENOENT;
        return {};
    }
    FileDescriptor file(::open(path.c_str(), flags | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    if (file.isOpen() && m_confinement &&
        !PathText::isSameOrInside(pathOfDescriptor(file.get()), *m_confinement)) {
        file.reset();
        errno = ENOENT;
    }
    return file;
}

std::optional<std::string> LinuxFileManager::perUserFolder(PerUserFolder folder) const
{
    return folder == PerUserFolder::cache ? m_folders.cacheFolder : m_folders.temporaryFolder;
}

bool LinuxFileManager::exists(const std::string& path) const
{
    // After a shortage the path is not known to be missing; opening it reports the shortage.
    return open(path, O_PATH).isOpen() || isShortage(errno);
}

std::vector<std::string> LinuxFileManager::namesInFolder(const std::string& path) const
{
    const FileDescriptor folder = openFolder(path);
    if (!folder.isOpen()) {
        throw std::system_error(errno, std::generic_category(), path);
    }
    std::vector<std::string> names;
    DirectoryReader reader;
    int more = 0;
    while ((more = reader.readBatch(folder.get())) > 0) {
        reader.forEach([&](const char* name) {
            names.emplace_back(name);
            return true;
        });
    }
    if (more < 0) {
        throw std::system_error(-more, std::generic_category(), path);
    }
    std::sort(names.begin(), names.end());
    return names;
}

FileDescriptor LinuxFileManager::openFolder(const std::string& path) const
{
    return open(path, O_RDONLY | O_DIRECTORY);
}

std::vector<EntryMeasure> LinuxFileManager::measure(const std::string& folder,
                                                    std::span<const std::string> names,
                                                    const std::stop_token& stop) const
{
    FileDescriptor directory = openFolder(folder);
    if (!directory.isOpen() && errno != ENOENT) {
        throw std::system_error(errno, std::generic_category(), folder);
    }
    EntryStatus home;
    const bool isHomeKnown = readStatus(AT_FDCWD, m_folders.home.c_str(), home) == 0;
    return TreeMeasurer(m_pool).measure(std::move(directory), names, stop,
                                        isHomeKnown ? std::optional(home.owner) : std::nullopt);
}

std::optional<EntryAttributes> LinuxFileManager::attributes(const std::string& path) const
{
    const FileDescriptor parent = open(PathText::parent(path), O_PATH | O_DIRECTORY);
    const std::string name(PathText::lastComponent(path));
    EntryStatus status;
    if (!parent.isOpen() || readStatus(parent.get(), name.c_str(), status) != 0) {
        return std::nullopt;
    }
    return EntryAttributes{status.identity.kind, status.allocatedBytes};
}

bool LinuxFileManager::visitTree(const std::string& path, const TreeVisitor& visit) const
{
    const FileDescriptor parent = open(PathText::parent(path), O_PATH | O_DIRECTORY);
    FileDescriptor folder = open(path, O_RDONLY | O_DIRECTORY | O_NOFOLLOW);
    EntryStatus parentStatus;
    EntryStatus status;
    if (!parent.isOpen() || !folder.isOpen() || readStatus(parent.get(), "", parentStatus) != 0 ||
        readStatus(folder.get(), "", status) != 0 || status.isBeyondBoundaryOf(parentStatus)) {
        return false;
    }
    walkTree(std::move(folder), path, visit);
    return true;
}

std::string LinuxFileManager::resolvingSymbolicLinks(const std::string& path) const
{
    return resolveSymbolicLinks(path);
}

std::optional<std::int64_t> LinuxFileManager::availableCapacity(const std::string& path) const
{
    const FileDescriptor file = open(path, O_PATH);
    struct statvfs capacity = {};
    if (!file.isOpen() || ::fstatvfs(file.get(), &capacity) != 0) {
        return std::nullopt;
    }
    return static_cast<std::int64_t>(capacity.f_bavail * capacity.f_frsize);
}

std::unique_ptr<Removal>
LinuxFileManager::beginRemoval(const std::string& home,
                               std::span<const std::string> protectedFolders) const
{
    return std::make_unique<LinuxRemoval>(home, protectedFolders, m_confinement, m_pool);
}

} // namespace CleanCore
