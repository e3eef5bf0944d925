#include "CleanCore/FileSystem/Removing/LinuxRemoval.h"

#include "CleanCore/FileSystem/Descriptors.h"
#include "CleanCore/FileSystem/LinkResolver.h"
#include "CleanCore/FileSystem/OpenWithoutLinks.h"
#include "CleanCore/FileSystem/Removing/TemporaryPermissions.h"
#include "CleanCore/FileSystem/Removing/TreeEmptier.h"
#include "CleanCore/Support/PathText.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace CleanCore {

namespace {

// Measured: a second worker is faster on every file system, a third on none.
constexpr unsigned helperCount = 1;
constexpr int refillLimit = 4;

std::vector<std::string> componentsBelow(const std::string& path, const std::string& folder)
{
    std::vector<std::string> names = PathText::components(path.substr(folder.size()));
    names.erase(names.begin());
    return names;
}

/// The names that lead from `base` down to `path`; none if it does not lie inside. The last one is
/// never resolved: a link is removed itself.
std::vector<std::string> namesBelow(const std::string& base, const std::string& path)
{
    const std::string folder(PathText::withoutTrailingSlashes(base));
    if (path.find('\0') != std::string::npos) {
        return {};
    }
    if (folder != "/" && PathText::isSameOrInside(path, folder)) {
        return componentsBelow(path, folder);
    }
    const std::string resolvedBase = resolveSymbolicLinks(folder);
    const std::string resolvedParent = resolveSymbolicLinks(PathText::parent(path));
    if (!PathText::isSameOrInside(resolvedParent, resolvedBase)) {
        return {};
    }
    std::vector<std::string> names = componentsBelow(resolvedParent, resolvedBase);
    names.emplace_back(PathText::lastComponent(path));
    return names;
}

} // namespace

LinuxRemoval::LinuxRemoval(const std::string& home, std::span<const std::string> protectedFolders,
                           std::optional<std::string> confinement, std::shared_ptr<TaskPool> pool,
                           PinMethod method)
    : m_confinement(std::move(confinement)), m_pool(std::move(pool)), m_method(method),
      m_protected(home, protectedFolders)
{
    struct stat status = {};
    if (::stat(home.c_str(), &status) == 0) {
        m_owner = status.st_uid;
    }
}

RemovalOutcome LinuxRemoval::remove(const std::string& base, const std::string& path,
                                    const std::optional<EntryIdentity>& seen)
{
    RemovalOutcome outcome;
    Held held;
    outcome.error = hold(base, path, seen, held);
    const EntryPin& pin = held.pin;
    outcome.wasSymbolicLink = pin.entry.isOpen() && pin.status.isSymbolicLink();
    if (outcome.error == 0) {
        if (pin.status.isFolder()) {
            outcome.error = removeFolder(held.base, pin);
        } else if (::unlinkat(pin.parent.get(), pin.name.c_str(), 0) != 0) {
            outcome.error = errno;
        }
    }
    if (outcome.error == 0 && held.isDirect) {
        removeTrashRecord(held.base, pin.name);
    }
    return outcome;
}

int LinuxRemoval::check(const std::string& base, const std::string& path,
                        const std::optional<EntryIdentity>& seen)
{
    Held held;
    return hold(base, path, seen, held);
}

int LinuxRemoval::hold(const std::string& base, const std::string& path,
                       const std::optional<EntryIdentity>& seen, Held& held) const
{
    int error = openBase(base, held.base);
    if (error != 0) {
        return error;
    }
    const std::vector<std::string> names = namesBelow(base, path);
    held.isDirect = names.size() == 1;
    error = pinEntry(held.base.folder.get(), names, held.pin, m_method);
    if (error == 0) {
        error = reasonToKeep(held.pin, seen);
    }
    if (error != 0) {
        return error;
    }
    // A folder that the system would not remove in the end must not be emptied first.
    return ::faccessat(held.pin.parent.get(), ".", W_OK | X_OK, AT_EACCESS) == 0 ? 0 : errno;
}

int LinuxRemoval::openBase(const std::string& path, Base& base) const
{
    if (path.find('\0') != std::string::npos) {
        return ENOENT;
    }
    base.path = path;
    base.folder = holdFolderThroughLinks(path);
    if (!base.folder.isOpen()) {
        return errno;
    }
    if (!isVisible(base.folder.get())) {
        return ENOENT;
    }
    return readStatus(base.folder.get(), "", base.status);
}

bool LinuxRemoval::isVisible(int folder) const
{
    return !m_confinement || PathText::isSameOrInside(pathOfDescriptor(folder), *m_confinement);
}

/// Judges the held entry itself, not its path: an error, 0 when the entry may go.
int LinuxRemoval::reasonToKeep(const EntryPin& pin, const std::optional<EntryIdentity>& seen) const
{
    if (seen && *seen != pin.status.identity) {
        return ESTALE;
    }
    if (!m_owner || pin.status.owner != *m_owner) {
        return foreignEntryError;
    }
    if (pin.status.isBeyondBoundaryOf(pin.parentStatus)) {
        return EXDEV;
    }
    const bool isProtected =
        (pin.status.isFolder() && m_protected.holdsOrLeadsTo(pin.status.identity)) ||
        m_protected.enclose(pin.parent.get());
    return isProtected ? protectedEntryError : 0;
}

int LinuxRemoval::removeFolder(const Base& base, const EntryPin& pin) const
{
    const FileDescriptor folder = openFolder(pin.entry.get(), ".");
    if (!folder.isOpen()) {
        return errno;
    }
    TemporaryPermissions permissions;
    int error = 0;
    const auto isInPlace = [&] {
        EntryStatus entry;
        struct stat now = {};
        return readStatus(pin.parent.get(), pin.name.c_str(), entry) == 0 &&
               entry.identity == pin.status.identity && ::stat(base.path.c_str(), &now) == 0 &&
               now.st_dev == base.status.identity.device &&
               now.st_ino == base.status.identity.inode;
    };
    const TreeEmptier emptier(m_pool, helperCount);
    const EmptyingLimits limits{*m_owner, &m_protected, isInPlace};
    for (int attempt = 0; attempt < refillLimit; ++attempt) {
        error = emptier.empty(folder, pin.status, limits, permissions);
        if (error != 0) {
            break;
        }
        if (::unlinkat(pin.parent.get(), pin.name.c_str(), AT_REMOVEDIR) == 0) {
            return 0;
        }
        error = errno;
        if (error != ENOTEMPTY && error != EEXIST) {
            break;
        }
    }
    permissions.restore(folder.get(), pin.status);
    return error;
}

/// Removes the record of an entry of the Trash that has gone. The record is looked up beside the
/// very folder that was cleaned, through no link, and must be a regular file of the same owner.
void LinuxRemoval::removeTrashRecord(const Base& base, const std::string& name) const
{
    constexpr std::string_view trashFiles = "/Trash/files";
    const std::string_view path = PathText::withoutTrailingSlashes(base.path);
    if (path.size() < trashFiles.size() ||
        path.substr(path.size() - trashFiles.size()) != trashFiles) {
        return;
    }
    const FileDescriptor trash = holdFolder(base.folder.get(), "..");
    EntryStatus files;
    if (!trash.isOpen() || !isVisible(trash.get()) ||
        readStatus(trash.get(), "files", files) != 0 || files.identity != base.status.identity) {
        return;
    }
    const std::string names[] = {"info", name + ".trashinfo"};
    EntryPin record;
    if (pinEntry(trash.get(), names, record, m_method) == 0 &&
        record.status.identity.kind == EntryKind::file && record.status.owner == *m_owner) {
        // File managers clear away the record of a missing entry, so a failure does no harm.
        static_cast<void>(::unlinkat(record.parent.get(), record.name.c_str(), 0));
    }
}

} // namespace CleanCore
