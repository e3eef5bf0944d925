#pragma once

#include "CleanCore/FileSystem/EntryStatus.h"
#include "CleanCore/FileSystem/Walking/NameList.h"
#include "CleanCore/Support/FileDescriptor.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace CleanCore {

/// The folders from a root down to the one that is being worked on, for a walk that is not
/// recursive and holds a bounded number of descriptors: beyond the limit the levels nearest the
/// root are closed, and reopened through ".." on the way back up. A level counts as reopened only
/// if it is the very folder that it was.
class FolderStack
{
public:
    struct Level
    {
        FileDescriptor folder;
        EntryStatus status;
        /// The name of this folder in the one above; empty for the root.
        std::string name;
        /// Subfolders still to be entered.
        NameList pending;
        /// Whether the folder was closed and opened again, so that it is read from its beginning.
        bool wasReopened = false;
    };

    /// A part of a walk that another worker can take.
    struct Share
    {
        FileDescriptor folder;
        EntryStatus status;
        NameList subfolders;
        /// The level that it was split off.
        std::size_t level = 0;
    };

    /// Holds at most `openLimit` descriptors (at least 2), the root's among them.
    explicit FolderStack(std::size_t openLimit) : m_openLimit(openLimit < 2 ? 2 : openLimit) {}

    [[nodiscard]] bool isEmpty() const { return m_levels.empty(); }
    [[nodiscard]] std::size_t depth() const { return m_levels.size(); }
    [[nodiscard]] Level& top() { return m_levels.back(); }
    [[nodiscard]] Level& at(std::size_t index) { return m_levels[index]; }

    Level& push(FileDescriptor folder, const EntryStatus& status, std::string name = {});

    /// Opens the level above the top again if it is closed. False if it cannot be opened or is
    /// another folder now.
    [[nodiscard]] bool openParent();

    /// Leaves the top level. False, and empty, if the level above could not be reopened or is
    /// another folder now: the tree was moved, and the work must not continue in its new place.
    [[nodiscard]] bool pop();

    void clear();

    /// Splits half of the pending subfolders off the open level nearest the root that has any,
    /// which is the largest part of the walk that another worker can take. Nothing when only one is
    /// pending at the top, or a chain of folders would wander from worker to worker, or when the
    /// system lacks a descriptor.
    [[nodiscard]] std::optional<Share> splitPending();

private:
    std::size_t m_openLimit;
    // Levels from 1 up to here (exclusive) are closed; the root always stays open.
    std::size_t m_firstOpen = 1;
    std::vector<Level> m_levels;
};

} // namespace CleanCore
