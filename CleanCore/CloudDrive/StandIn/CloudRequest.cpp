#include "CleanCore/CloudDrive/StandIn/CloudRequest.h"

#include "CleanCore/CloudDrive/ICloudItem.h"
#include "CleanCore/CloudDrive/StandIn/CloudFilePair.h"
#include "CleanCore/FileSystem/Descriptors.h"
#include "CleanCore/FileSystem/LinkResolver.h"
#include "CleanCore/FileSystem/OpenWithoutLinks.h"
#include "CleanCore/Support/PathText.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <linux/magic.h>
#include <sys/vfs.h>

namespace CleanCore {

namespace {

using Reason = CloudRefusalReason;

/// The components of `path` below `container`, as text; empty when it names no entry there.
std::vector<std::string> namesBelow(const std::string& container, const std::string& path)
{
    if (!PathText::isSameOrInside(path, container) || path.find('\0') != std::string::npos) {
        return {};
    }
    std::vector<std::string> names = PathText::components(path.substr(container.size()));
    names.erase(names.begin());
    return names;
}

bool isInMemory(int folder)
{
    struct statfs system = {};
    return ::fstatfs(folder, &system) != 0 || system.f_type == TMPFS_MAGIC ||
           system.f_type == RAMFS_MAGIC;
}

} // namespace

std::optional<CloudFailure> CloudRequest::open(const std::string& home,
                                               const std::string& container,
                                               const std::string& mirror, const std::string& path)
{
    const std::vector<std::string> names = namesBelow(container, path);
    if (names.empty()) {
        return CloudFailure{Reason::outsideContainer, 0};
    }
    if (auto failure = openFolders(home, container, mirror)) {
        return failure;
    }
    if (auto failure = checkApart(home)) {
        return failure;
    }
    m_entry.path = path;
    return openEntry(names);
}

std::optional<CloudFailure> CloudRequest::openFolders(const std::string& home,
                                                      const std::string& container,
                                                      const std::string& mirror)
{
    EntryStatus named;
    if (readStatus(AT_FDCWD, container.c_str(), named) == 0 && named.isSymbolicLink()) {
        return CloudFailure{Reason::linkedContainer, 0};
    }
    m_container = openFolder(AT_FDCWD, container.c_str());
    if (!m_container.isOpen() || readStatus(AT_FDCWD, home.c_str(), m_home) != 0 ||
        readStatus(m_container.get(), "", m_containerStatus) != 0) {
        return CloudFailure{Reason::noContainer, 0};
    }
    m_mirror = openFolder(AT_FDCWD, resolveSymbolicLinks(mirror).c_str());
    if (!m_mirror.isOpen() || readStatus(m_mirror.get(), "", m_mirrorStatus) != 0) {
        return CloudFailure{Reason::noMirror, 0};
    }
    return std::nullopt;
}

/// Judges where the two folders really are, whatever path led to them.
std::optional<CloudFailure> CloudRequest::checkApart(const std::string& home) const
{
    const std::string container = pathOfDescriptor(m_container.get());
    const std::string mirror = pathOfDescriptor(m_mirror.get());
    if (!PathText::isSameOrInside(container, home)) {
        return CloudFailure{Reason::noContainer, 0};
    }
    if (!PathText::isSameOrInside(mirror, home)) {
        return CloudFailure{Reason::noMirror, 0};
    }
    // Two mounts of one file system may show the same folders under different paths.
    const bool mayOverlapUnseen =
        m_containerStatus.identity.device == m_mirrorStatus.identity.device &&
        m_containerStatus.mountId != m_mirrorStatus.mountId;
    if (mayOverlapUnseen || m_containerStatus.identity == m_mirrorStatus.identity ||
        PathText::isSameOrInside(container, mirror) ||
        PathText::isSameOrInside(mirror, container)) {
        return CloudFailure{Reason::foldersOverlap, 0};
    }
    if (isInMemory(m_mirror.get()) && !isInMemory(m_container.get())) {
        return CloudFailure{Reason::mirrorNotDurable, 0};
    }
    return std::nullopt;
}

std::optional<CloudFailure> CloudRequest::openEntry(const std::vector<std::string>& names)
{
    EntryPin local;
    if (const int error = pinEntry(m_container.get(), names, local); error != 0) {
        switch (error) {
        case EXDEV:
            return CloudFailure{Reason::otherMount, 0};
        case EINVAL:
        case ENOENT:
        case ELOOP:
        case ENOTDIR:
            return CloudFailure{Reason::outsideContainer, 0};
        default:
            return CloudFailure{Reason::systemError, error};
        }
    }
    m_isInAppBundle = std::any_of(names.begin(), names.end() - 1, isAppBundleName) ||
                      (local.status.isFolder() && isAppBundleName(names.back()));
    m_folder = openFolder(local.parent.get(), ".");
    if (!m_folder.isOpen()) {
        return failureOf(errno);
    }
    m_entry.folder = m_folder.get();
    m_entry.folderStatus = local.parentStatus;
    m_entry.name = names.back();

    EntryPin copy;
    if (pinEntry(m_mirror.get(), names, copy) == 0) {
        m_mirrorFolder = openFolder(copy.parent.get(), ".");
        m_entry.mirrorFolder = m_mirrorFolder.get();
        m_entry.mirrorFolderStatus = copy.parentStatus;
    }
    return std::nullopt;
}

} // namespace CleanCore
