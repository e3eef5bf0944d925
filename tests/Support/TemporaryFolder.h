#pragma once

#include "CleanCore/Support/Timestamp.h"

#include <filesystem>
#include <string>
#include <string_view>

namespace CleanCoreTests {

/// A folder of the test's own below the system's temporary folder, gone with everything in it at
/// the end, whatever permissions the test gave its entries. Paths given to its members are relative
/// to it; parents are made as needed. Every member throws std::system_error when it fails.
///
/// A tree is written as its entries, with white space between them:
///   a/note          a file, which holds "content"    a/b/          a folder
///   a/data:5k       a file of 5 KiB (":300")         pipe|         a FIFO
///   link->../note   a link; "~" begins a target that is a path in this folder: link->~/a/note
///   twin==a/note    a hard link to an entry that is in this folder by then
/// Behind any of them: =0500 its mode, then @40d its age (or @7d1ns; negative for what is still to
/// come). Modes and ages are given once all entries are there, the last entry's first. A name with
/// a blank or one of :|@= in it is written in single quotes.
class TemporaryFolder
{
public:
    /// `below`: the folder to make it in; another than the default for another file system.
    explicit TemporaryFolder(const std::string& below = "/tmp");
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder();

    /// Its own path, without links.
    [[nodiscard]] const std::string& path() const { return m_path; }
    [[nodiscard]] std::string path(std::string_view relative) const
    {
        return relative.empty() ? m_path : m_path + '/' + std::string(relative);
    }

    /// Makes the entries of `tree`. Files that are there are overwritten, links replaced. Ages are
    /// counted back from `now`. Throws std::invalid_argument for a text that is no tree.
    void make(std::string_view tree, CleanCore::Timestamp now = {}) const;

    /// What is in the folder `below`, as make() takes it, in the order of the paths: every entry
    /// except folders that hold another. Sizes are told of files that do not hold "content", modes
    /// of what its owner may not read and write (and enter); ages are not told.
    [[nodiscard]] std::string tree(std::string_view below = "") const;

    std::string makeFolder(std::string_view relative) const
    {
        std::filesystem::create_directories(path(relative));
        return path(relative);
    }
    std::string makeFile(std::string_view relative, std::string_view content = "content") const;
    /// Sets the modification time of an entry, of a link itself.
    void setTime(std::string_view relative, CleanCore::Timestamp time) const;
    void setMode(std::string_view relative, unsigned mode) const
    {
        std::filesystem::permissions(path(relative), std::filesystem::perms(mode));
    }

    /// Removes an entry with everything in it.
    void remove(std::string_view relative) const { std::filesystem::remove_all(path(relative)); }
    /// Renames an entry; `to` may not be there, or may be what rename(2) replaces.
    void move(std::string_view from, std::string_view to) const
    {
        std::filesystem::rename(path(from), path(to));
    }

    /// Whether an entry is there; a link counts, wherever it leads.
    [[nodiscard]] bool has(std::string_view relative) const
    {
        std::error_code ignored;
        return std::filesystem::exists(std::filesystem::symlink_status(path(relative), ignored));
    }

private:
    std::string m_path;
};

/// Every entry below `folder` with kind, mode, owner, modification time and content (or target),
/// one line each, in a fixed order: two snapshots are equal exactly when nothing has changed.
/// Folders' times are left out, since reading them is all that keeps them the same.
[[nodiscard]] std::string snapshot(const std::string& folder);

} // namespace CleanCoreTests
