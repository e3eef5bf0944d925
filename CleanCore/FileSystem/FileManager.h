#pragma once

#include "CleanCore/FileSystem/EntryIdentity.h"
#include "CleanCore/FileSystem/Obstacle.h"
#include "CleanCore/FileSystem/Removing/Removal.h"
#include "CleanCore/Support/FileDescriptor.h"
#include "CleanCore/Support/Timestamp.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

namespace CleanCore {

/// The folders that the system gives to one user outside any application's own.
enum class PerUserFolder { cache, temporary };

/// The disk space of one entry with everything inside it, and the time of the latest change in it.
struct EntryMeasure
{
    /// Allocated bytes on disk.
    std::int64_t sizeBytes = 0;
    Timestamp latestModification = distantPast;
    /// The entry that was measured; absent when its attributes could not be read.
    std::optional<EntryIdentity> identity;
    Obstacle obstacle = Obstacle::none;
};

/// The attributes of one entry that the engines need, a link's own.
struct EntryAttributes
{
    EntryKind kind = EntryKind::other;
    std::int64_t allocatedBytes = 0;

    [[nodiscard]] bool operator==(const EntryAttributes&) const = default;
};

/// One entry that a walk of a tree reaches.
struct TreeEntry
{
    /// Absolute; lives until the visitor returns.
    std::string_view path;
    EntryAttributes attributes;
};

/// Visits one entry; false ends the walk.
using TreeVisitor = std::function<bool(const TreeEntry&)>;

/// The one seam to the file system: the few operations that the engines need.
///
/// Paths are absolute and are the exact bytes that the kernel gave. All operations are safe from
/// any thread and from many at once. Expensive ones work on whole trees, so that no call and no
/// path is paid per entry.
class FileManager
{
public:
    FileManager() = default;
    FileManager(const FileManager&) = delete;
    FileManager& operator=(const FileManager&) = delete;
    virtual ~FileManager() = default;

    /// The path of a per-user folder; nothing where the system has none.
    [[nodiscard]] virtual std::optional<std::string> perUserFolder(PerUserFolder folder) const = 0;

    /// Whether something exists at `path`; a link counts if its target does. True when the system
    /// lacks the descriptors or the memory to find out; namesInFolder() then reports the error.
    [[nodiscard]] virtual bool exists(const std::string& path) const = 0;

    /// The names in a folder, hidden ones included, in the order of this file manager. Throws
    /// std::system_error when there is no such folder or it cannot be read.
    [[nodiscard]] virtual std::vector<std::string> namesInFolder(const std::string& path) const = 0;

    /// Opens a folder to read it, through links. Closed when there is no such folder or it cannot
    /// be read, and for file managers without descriptors.
    [[nodiscard]] virtual FileDescriptor openFolder(const std::string& path) const = 0;

    /// Measures the named entries of `folder`, in the order of `names`; see TreeMeasurer. An entry
    /// that cannot be read counts as 0 bytes. Figures are incomplete after a stop request. Throws
    /// std::system_error when `folder` exists and cannot be opened.
    [[nodiscard]] virtual std::vector<EntryMeasure> measure(const std::string& folder,
                                                            std::span<const std::string> names,
                                                            const std::stop_token& stop) const = 0;

    /// The attributes of the entry at `path`, a link's own; nothing when they cannot be read.
    [[nodiscard]] virtual std::optional<EntryAttributes>
    attributes(const std::string& path) const = 0;

    /// Calls `visit` for every entry below the folder `path`, one after the other: depth first, a
    /// folder before everything in it, hidden entries included, links as links. Entries that cannot
    /// be read, or lie behind another mount, are skipped. Ends early when `visit` returns
    /// false. Returns false when `path` is no folder, a link, a mount, or cannot be opened.
    virtual bool visitTree(const std::string& path, const TreeVisitor& visit) const = 0;

    /// `path` with every link in it followed and without "." and ".."; components that do not exist
    /// stay as they are written.
    [[nodiscard]] virtual std::string resolvingSymbolicLinks(const std::string& path) const = 0;

    /// Free bytes, for the user, of the file system that holds `path`; nothing when unknown.
    [[nodiscard]] virtual std::optional<std::int64_t>
    availableCapacity(const std::string& path) const = 0;

    /// Begins the removals of one clean. Only entries of the owner of `home` are removed.
    /// `protectedFolders` stay, even when they are renamed, with everything in and above them.
    [[nodiscard]] virtual std::unique_ptr<Removal>
    beginRemoval(const std::string& home, std::span<const std::string> protectedFolders) const = 0;
};

} // namespace CleanCore
