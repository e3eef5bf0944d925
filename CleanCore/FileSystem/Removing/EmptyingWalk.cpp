#include "CleanCore/FileSystem/Removing/EmptyingWalk.h"

#include "CleanCore/FileSystem/OpenWithoutLinks.h"
#include "CleanCore/FileSystem/Walking/Climb.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <optional>
#include <utility>

namespace CleanCore {

namespace {

constexpr std::size_t foldersBetweenPlaceChecks = 16;
constexpr std::size_t rescanLimit = 8;
// Reading a folder is interrupted, and its subfolders entered, once their names take this much.
constexpr std::size_t pendingBytesLimit = std::size_t{4} * 1024 * 1024;

} // namespace

void EmptyingWalk::run(EmptyingPiece piece)
{
    m_depthOfRoot = piece.depth;
    push(std::move(piece.folder), piece.status, {});
    m_stack.top().pending = std::move(piece.subfolders);
    if (piece.isWhole) {
        readTop();
    }
    while (!m_stack.isEmpty()) {
        if (m_job.isOver) {
            abandon();
            return;
        }
        if (m_job.wantsPieces()) {
            shareWork();
        }
        if (!m_stack.top().pending.isEmpty()) {
            enter(m_stack.top().pending.takeLast());
        } else if (m_progress.back().isPartlyRead) {
            readTop();
        } else {
            removeTop();
        }
    }
}

void EmptyingWalk::push(FileDescriptor folder, const EntryStatus& status, std::string name)
{
    m_stack.push(std::move(folder), status, std::move(name));
    m_progress.emplace_back();
}

void EmptyingWalk::recordKept(int error)
{
    m_job.recordError(error);
    ++m_progress.back().kept;
}

/// Whether the top folder is still somewhere inside the tree, and the tree in its place. If a
/// folder was moved away, nothing in it may be removed any more.
bool EmptyingWalk::isInPlace()
{
    m_enteredSinceCheck = 0;
    if (!m_job.limits.isInPlace()) {
        m_job.recordError(ESTALE);
        m_job.isOver = true;
        return false;
    }
    bool isInsideTree = false;
    const bool isKnown = climb(m_stack.top().folder.get(), [&](const EntryIdentity& identity) {
        isInsideTree = identity == m_job.root.identity;
        return !isInsideTree;
    });
    return isKnown && isInsideTree;
}

/// Leaves everything as it is, for another pass.
void EmptyingWalk::abandon()
{
    m_job.isIncomplete = true;
    m_permissions.restoreAll(m_stack);
}

/// Opens a subfolder of the top folder, unless there is a reason to keep it. Returns an error, 0
/// for success.
int EmptyingWalk::open(const std::string& name, FileDescriptor& folder, EntryStatus& status)
{
    const FolderStack::Level& parent = m_stack.top();
    folder = openFolder(parent.folder.get(), name.c_str());
    if (folder.isOpen()) {
        const int error = readStatus(folder.get(), "", status);
        return error != 0 ? error : m_job.limits.reasonToKeep(status, parent.status);
    }
    const int error = errno;
    if (error != EACCES || readStatus(parent.folder.get(), name.c_str(), status) != 0) {
        return error;
    }
    const int reason = m_job.limits.reasonToKeep(status, parent.status);
    return reason != 0 ? reason : error;
}

void EmptyingWalk::enter(std::string name, std::size_t rescans)
{
    // The check costs as many steps as the tree is deep, so it is made less often in deep trees.
    const std::size_t depth = m_depthOfRoot + m_stack.depth();
    if (++m_enteredSinceCheck > std::max(foldersBetweenPlaceChecks, depth) && !isInPlace()) {
        abandon();
        return;
    }
    FileDescriptor folder;
    EntryStatus status;
    const int error = open(name, folder, status);
    if (error == ENOENT || error == ENOTDIR || error == ELOOP) {
        // Gone, or no longer a folder, which the next reading of the folder above will find.
        return;
    }
    if (error != 0) {
        recordKept(error);
        return;
    }
    push(std::move(folder), status, std::move(name));
    m_progress.back().rescans = rescans;
    readTop();
}

void EmptyingWalk::readTop()
{
    FolderStack::Level& level = m_stack.top();
    m_progress.back().isPartlyRead = false;
    bool isFirstBatch = true;
    int more = 0;
    while ((more = m_reader.readBatch(level.folder.get())) > 0) {
        if (!std::exchange(isFirstBatch, false) && !isInPlace()) {
            abandon();
            return;
        }
        m_reader.forEach([&](const char* name, bool isKnownFolder) {
            removeOrDefer(name, isKnownFolder);
            return !m_job.isOver;
        });
        if (m_job.isOver) {
            return;
        }
        if (level.pending.bytes() > pendingBytesLimit) {
            // A folder is read again only as long as every reading removes something.
            Progress& progress = m_progress.back();
            const bool isFutile =
                std::exchange(level.wasReopened, false) && std::exchange(progress.removed, 0) == 0;
            progress.isPartlyRead = !isFutile;
            return;
        }
    }
    if (more < 0) {
        recordKept(-more);
    }
}

/// Removes one entry of the top folder; a folder is added to those that are entered later.
void EmptyingWalk::removeOrDefer(const char* name, bool isKnownFolder)
{
    FolderStack::Level& level = m_stack.top();
    if (isKnownFolder) {
        // Judged when it is open, so that the judgement is about the very folder that is entered.
        level.pending.add(name);
        return;
    }
    EntryStatus status;
    int error = readStatus(level.folder.get(), name, status);
    if (error == 0) {
        error = m_job.limits.reasonToKeep(status, level.status);
    }
    if (error == 0 && !status.isFolder()) {
        error = m_permissions.unlink(level, name, 0);
    }
    if (error == ENOENT) {
        return;
    }
    if (error == EISDIR || (error == 0 && status.isFolder())) {
        level.pending.add(name);
    } else if (error != 0) {
        recordKept(error);
    } else {
        ++m_progress.back().removed;
    }
}

/// Leaves the top folder, which has been worked through, and removes it unless something stays.
void EmptyingWalk::removeTop()
{
    FolderStack::Level& level = m_stack.top();
    const Progress progress = m_progress.back();
    std::string name = level.name;
    if (!m_stack.openParent()) {
        abandon();
        return;
    }
    if (progress.kept > 0 && !m_job.isIncomplete) {
        m_permissions.restore(level.folder.get(), level.status);
    }
    m_progress.pop_back();
    if (!m_stack.pop() || m_stack.isEmpty()) {
        return;
    }
    if (progress.kept > 0) {
        ++m_progress.back().kept;
        return;
    }
    const int error = m_permissions.unlink(m_stack.top(), name.c_str(), AT_REMOVEDIR);
    if ((error == ENOTEMPTY || error == EEXIST) && progress.rescans < rescanLimit) {
        enter(std::move(name), progress.rescans + 1);
    } else if (error == 0) {
        ++m_progress.back().removed;
    } else if (error != ENOENT && error != ENOTDIR) {
        recordKept(error);
        m_permissions.restore(m_stack.top(), name);
    }
}

/// Offers a part of this walk to another worker. The folder above that part cannot go before it, so
/// it is left to another pass.
void EmptyingWalk::shareWork()
{
    if (std::optional<FolderStack::Share> share = m_stack.splitPending()) {
        m_job.isIncomplete = true;
        ++m_progress[share->level].kept;
        m_job.offer({std::move(share->folder), share->status, std::move(share->subfolders),
                     m_depthOfRoot + share->level, false});
    }
}

} // namespace CleanCore
