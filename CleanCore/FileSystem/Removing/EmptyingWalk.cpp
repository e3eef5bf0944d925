#include "CleanCore/FileSystem/Removing/EmptyingWalk.h"

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
// Subfolders are entered before more of a folder is read than this many bytes of their names.
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
            leave();
        }
    }
}

void EmptyingWalk::push(FileDescriptor folder, const EntryStatus& status, std::string name)
{
    m_stack.push(std::move(folder), status, std::move(name));
    m_progress.emplace_back();
}

void EmptyingWalk::keep(int error)
{
    m_job.note(error);
    ++m_progress.back().kept;
}

/// Whether the top folder is still somewhere inside the tree, and the tree in its place. A folder
/// that was moved away takes everything in it out of the work.
bool EmptyingWalk::isInPlace()
{
    m_enteredSinceCheck = 0;
    if (!m_job.limits.isInPlace()) {
        m_job.note(ESTALE);
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

/// Leaves everything as it is, to be looked at again by another pass.
void EmptyingWalk::abandon()
{
    m_job.isIncomplete = true;
    m_steps.takeAllBack(m_stack);
    m_stack.clear();
}

void EmptyingWalk::enter(std::string name, std::size_t rescans)
{
    // Looking up costs as many steps as the tree is deep, so deep trees are looked at less often.
    const std::size_t depth = m_depthOfRoot + m_stack.depth();
    if (++m_enteredSinceCheck > std::max(foldersBetweenPlaceChecks, depth) && !isInPlace()) {
        abandon();
        return;
    }
    FileDescriptor folder;
    EntryStatus status;
    const int error = m_steps.openSubfolder(m_stack.top(), name, folder, status);
    if (error == ENOENT || error == ENOTDIR || error == ELOOP) {
        // Gone, or something else by now, which another look at this folder will find.
        return;
    }
    if (error != 0) {
        keep(error);
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
            look(name, isKnownFolder);
            return !m_job.isOver;
        });
        if (m_job.isOver) {
            return;
        }
        if (level.pending.bytes() > pendingBytesLimit) {
            // Starting anew is only worth while as long as the folder gets emptier by it.
            Progress& progress = m_progress.back();
            const bool isFutile =
                std::exchange(level.wasReopened, false) && std::exchange(progress.removed, 0) == 0;
            progress.isPartlyRead = !isFutile;
            return;
        }
    }
    if (more < 0) {
        keep(-more);
    }
}

/// Removes one entry of the top folder, or puts it down for later if it is a folder.
void EmptyingWalk::look(const char* name, bool isKnownFolder)
{
    FolderStack::Level& level = m_stack.top();
    if (isKnownFolder) {
        // Judged when it is opened, by what was opened.
        level.pending.add(name);
        return;
    }
    EntryStatus status;
    int error = m_steps.statusOf(level, name, status);
    if (error == 0) {
        error = m_job.reasonToKeep(status, level.status);
    }
    if (error == 0 && !status.isFolder()) {
        error = m_steps.unlink(level, name, 0);
    }
    if (error == ENOENT) {
        return;
    }
    if (error == EISDIR || (error == 0 && status.isFolder())) {
        level.pending.add(name);
    } else if (error != 0) {
        keep(error);
    } else {
        ++m_progress.back().removed;
    }
}

/// Removes the top folder, which has been worked through, from the one above.
void EmptyingWalk::leave()
{
    FolderStack::Level& level = m_stack.top();
    const Progress progress = m_progress.back();
    std::string name = level.name;
    // Before its permissions are taken back, which may be those to look for "..".
    if (!m_stack.openParent()) {
        abandon();
        return;
    }
    if (progress.kept > 0 && !m_job.isIncomplete) {
        m_steps.takeBack(level);
    }
    m_progress.pop_back();
    if (!m_stack.pop() || m_stack.isEmpty()) {
        return;
    }
    if (progress.kept > 0) {
        ++m_progress.back().kept;
        return;
    }
    const int error = m_steps.unlink(m_stack.top(), name.c_str(), AT_REMOVEDIR);
    if ((error == ENOTEMPTY || error == EEXIST) && progress.rescans < rescanLimit) {
        enter(std::move(name), progress.rescans + 1);
    } else if (error == 0) {
        ++m_progress.back().removed;
    } else if (error != ENOENT && error != ENOTDIR) {
        keep(error);
        m_steps.takeBack(m_stack.top(), name);
    }
}

/// Offers a part of this walk to another worker. The folder that the part lies in cannot go before
/// it, so it is left to another pass.
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
