#include "CleanCore/Platform/TreeEmptier.h"

#include "CleanCore/Platform/DirectoryReader.h"
#include "CleanCore/Platform/FolderStack.h"
#include "CleanCore/Platform/OwnerAccess.h"
#include "CleanCore/Platform/ProtectedIdentities.h"
#include "CleanCore/Support/SharedWork.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <fcntl.h>
#include <string>
#include <unistd.h>
#include <utility>
#include <vector>

namespace CleanCore {

namespace {

// Two walks with this many folders each, and what surrounds them, fit into 32 descriptors.
constexpr std::size_t openFolderLimit = 7;
constexpr std::size_t foldersBetweenPlaceChecks = 16;
constexpr std::size_t rescanLimit = 8;
constexpr std::size_t passLimit = 16;
// Subfolders are entered before more of a folder is read than this many bytes of their names.
constexpr std::size_t pendingBytesLimit = std::size_t{4} * 1024 * 1024;
constexpr int openFolderFlags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;

/// A folder to be emptied: wholly, or only of the subfolders that are named.
struct Piece
{
    FileDescriptor folder;
    EntryStatus status;
    NameList subfolders;
    // How many folders lie between this one and the root of the tree.
    std::size_t depth = 0;
    bool isWhole = false;
};

/// One pass over a tree.
class Job : public SharedWork<Piece>
{
public:
    Job(std::shared_ptr<TaskPool> pool, unsigned helpers, const TreeEmptier::Limits& limits,
        const EntryStatus& root)
        : SharedWork(std::move(pool), helpers), limits(limits), root(root)
    {
    }

    void note(int error)
    {
        int none = 0;
        firstError.compare_exchange_strong(none, error);
        if (error == EIO || error == EROFS) {
            isOver.store(true);
        }
    }

    /// Why an entry must stay, as an errno; 0 when it may go.
    [[nodiscard]] int reasonToKeep(const EntryStatus& entry, const EntryStatus& folder) const
    {
        if (entry.isBeyondBoundaryOf(folder)) {
            return EXDEV;
        }
        if (entry.owner != limits.owner ||
            (entry.isFolder() && limits.protectedIdentities->holdsOrLeadsTo(entry.identity))) {
            return EPERM;
        }
        return 0;
    }

    const TreeEmptier::Limits& limits;
    const EntryStatus root;
    std::atomic<int> firstError = 0;
    /// Nothing more may be done: the disk fails, or the tree is no longer where it was.
    std::atomic<bool> isOver = false;
    /// Another pass is needed: folders were left because a part of them was given away or moved.
    std::atomic<bool> isIncomplete = false;

protected:
    void workOn(Piece piece) override;
};

/// Works through one piece on one thread.
class Walk
{
public:
    explicit Walk(Job& job) : m_job(job) {}
    void run(Piece piece);

private:
    struct Progress
    {
        // Entries that stay, so that this folder has to.
        std::size_t kept = 0;
        std::size_t removed = 0;
        std::size_t rescans = 0;
        bool isPartlyRead = false;
    };

    void push(FileDescriptor folder, const EntryStatus& status, std::string name);
    void enter(std::string name, std::size_t rescans = 0);
    [[nodiscard]] int openSubfolder(const std::string& name, FileDescriptor& folder,
                                    EntryStatus& status);
    void readTop();
    void look(const char* name, bool isKnownFolder);
    [[nodiscard]] int statusOf(const char* name, EntryStatus& status);
    [[nodiscard]] int unlink(const char* name, int flags);
    void leave();
    void giveHalfAway();
    [[nodiscard]] bool isInPlace();
    void abandon();
    void takeAllBack();
    void takeBack(const std::string& name);
    void keep(int error);

    Job& m_job;
    DirectoryReader m_reader;
    FolderStack m_stack = FolderStack(openFolderLimit);
    std::vector<Progress> m_progress;
    std::size_t m_depthOfRoot = 0;
    std::size_t m_enteredSinceCheck = 0;
};

void Job::workOn(Piece piece)
{
    Walk(*this).run(std::move(piece));
}

void Walk::run(Piece piece)
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
            giveHalfAway();
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

void Walk::push(FileDescriptor folder, const EntryStatus& status, std::string name)
{
    m_stack.push(std::move(folder), status, std::move(name));
    m_progress.emplace_back();
}

void Walk::keep(int error)
{
    m_job.note(error);
    ++m_progress.back().kept;
}

/// Whether the top folder is still somewhere inside the tree, and the tree in its place. A folder
/// that was moved away takes everything in it out of the work.
bool Walk::isInPlace()
{
    m_enteredSinceCheck = 0;
    if (!m_job.limits.isInPlace()) {
        m_job.note(ESTALE);
        m_job.isOver = true;
        return false;
    }
    FileDescriptor held;
    int folder = m_stack.top().folder.get();
    EntryStatus status = m_stack.top().status;
    while (status.identity != m_job.root.identity) {
        FileDescriptor parent(::openat(folder, "..", O_PATH | O_DIRECTORY | O_CLOEXEC));
        EntryStatus above;
        if (!parent.isOpen() || readStatus(parent.get(), "", above) != 0 ||
            above.identity == status.identity) {
            return false;
        }
        held = std::move(parent);
        folder = held.get();
        status = above;
    }
    return true;
}

/// Leaves everything as it is, to be looked at again by another pass.
void Walk::abandon()
{
    m_job.isIncomplete = true;
    if (m_job.limits.ownerAccess->hasLent()) {
        takeAllBack();
    }
    m_stack.clear();
}

/// Gives every folder that can be reached its own permissions back, up from the top and, if the way
/// breaks off at a folder that was moved, down from the root. The next folder is opened first: what
/// is taken back may be the permission to look for it.
void Walk::takeAllBack()
{
    const auto takeBackAlong = [&](std::size_t from, std::size_t count, bool goesUp) {
        FileDescriptor held;
        int folder = m_stack.at(from).folder.get();
        std::size_t done = 0;
        while (folder >= 0 && done < count) {
            const FolderStack::Level& level = m_stack.at(goesUp ? from - done : from + done);
            FileDescriptor reopened;
            int next = -1;
            if (++done < count) {
                const FolderStack::Level& following =
                    m_stack.at(goesUp ? from - done : from + done);
                const char* const name = goesUp ? ".." : following.name.c_str();
                next = following.folder.get();
                if (next < 0) {
                    reopened = FileDescriptor(
                        ::openat(folder, name, O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
                    EntryStatus status;
                    const bool isSame = readStatus(reopened.get(), "", status) == 0 &&
                                        status.identity == following.status.identity;
                    next = isSame ? reopened.get() : -1;
                }
            }
            m_job.limits.ownerAccess->takeBack(folder, level.status);
            held = std::move(reopened);
            folder = next;
        }
        return done;
    };
    const std::size_t depth = m_stack.depth();
    const std::size_t done = takeBackAlong(depth - 1, depth, true);
    takeBackAlong(0, depth - done, false);
}

void Walk::enter(std::string name, std::size_t rescans)
{
    // Looking up costs as many steps as the tree is deep, so deep trees are looked at less often.
    const std::size_t depth = m_depthOfRoot + m_stack.depth();
    if (++m_enteredSinceCheck > std::max(foldersBetweenPlaceChecks, depth) && !isInPlace()) {
        abandon();
        return;
    }
    FileDescriptor folder;
    EntryStatus status;
    const int error = openSubfolder(name, folder, status);
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

int Walk::openSubfolder(const std::string& name, FileDescriptor& folder, EntryStatus& status)
{
    const FolderStack::Level& parent = m_stack.top();
    OwnerAccess& ownerAccess = *m_job.limits.ownerAccess;
    const auto open = [&](int flags) {
        return FileDescriptor(::openat(parent.folder.get(), name.c_str(), flags));
    };
    folder = open(openFolderFlags);
    if (!folder.isOpen() && errno == EACCES &&
        ownerAccess.lend(parent.folder.get(), parent.status)) {
        folder = open(openFolderFlags);
    }
    if (!folder.isOpen() && errno == EACCES) {
        const FileDescriptor closed = open(O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
        if (!closed.isOpen() || readStatus(closed.get(), "", status) != 0) {
            return errno;
        }
        if (const int reason = m_job.reasonToKeep(status, parent.status); reason != 0) {
            return reason;
        }
        if (!ownerAccess.lend(closed.get(), status)) {
            return EACCES;
        }
        folder = FileDescriptor(::openat(closed.get(), ".", openFolderFlags));
        if (!folder.isOpen()) {
            const int error = errno;
            ownerAccess.takeBack(closed.get(), status);
            return error;
        }
    }
    if (!folder.isOpen()) {
        return errno;
    }
    const int error = readStatus(folder.get(), "", status);
    return error != 0 ? error : m_job.reasonToKeep(status, parent.status);
}

void Walk::readTop()
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
void Walk::look(const char* name, bool isKnownFolder)
{
    FolderStack::Level& level = m_stack.top();
    if (isKnownFolder) {
        // Judged when it is opened, by what was opened.
        level.pending.add(name);
        return;
    }
    EntryStatus status;
    int error = statusOf(name, status);
    if (error == 0) {
        error = m_job.reasonToKeep(status, level.status);
    }
    if (error == 0 && !status.isFolder()) {
        error = unlink(name, 0);
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

int Walk::statusOf(const char* name, EntryStatus& status)
{
    const FolderStack::Level& level = m_stack.top();
    const int error = readStatus(level.folder.get(), name, status);
    if (error == EACCES && m_job.limits.ownerAccess->lend(level.folder.get(), level.status)) {
        return readStatus(level.folder.get(), name, status);
    }
    return error;
}

int Walk::unlink(const char* name, int flags)
{
    const FolderStack::Level& level = m_stack.top();
    if (::unlinkat(level.folder.get(), name, flags) == 0) {
        return 0;
    }
    if (errno == EACCES && m_job.limits.ownerAccess->lend(level.folder.get(), level.status) &&
        ::unlinkat(level.folder.get(), name, flags) == 0) {
        return 0;
    }
    return errno;
}

/// Removes the top folder, which has been worked through, from the one above.
void Walk::leave()
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
        m_job.limits.ownerAccess->takeBack(level.folder.get(), level.status);
    }
    m_progress.pop_back();
    if (!m_stack.pop() || m_stack.isEmpty()) {
        return;
    }
    if (progress.kept > 0) {
        ++m_progress.back().kept;
        return;
    }
    const int error = unlink(name.c_str(), AT_REMOVEDIR);
    if ((error == ENOTEMPTY || error == EEXIST) && progress.rescans < rescanLimit) {
        enter(std::move(name), progress.rescans + 1);
    } else if (error == 0) {
        ++m_progress.back().removed;
    } else if (error != ENOENT && error != ENOTDIR) {
        keep(error);
        takeBack(name);
    }
}

/// Gives a subfolder of the top folder, which stays after all, its own permissions back.
void Walk::takeBack(const std::string& name)
{
    const FileDescriptor folder(::openat(m_stack.top().folder.get(), name.c_str(),
                                         O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    EntryStatus status;
    if (folder.isOpen() && readStatus(folder.get(), "", status) == 0) {
        m_job.limits.ownerAccess->takeBack(folder.get(), status);
    }
}

/// Gives half of the subfolders nearest the root away: the largest part that can be had. The folder
/// that they are in cannot go before they have, so it is left to another pass. The only one is
/// kept, or a chain of folders would wander from worker to worker.
void Walk::giveHalfAway()
{
    m_stack.findOpen([&](std::size_t index) {
        FolderStack::Level& level = m_stack.at(index);
        const bool isOnlyOne = index + 1 == m_stack.depth() && !level.pending.holdsSeveral();
        if (level.pending.isEmpty() || isOnlyOne) {
            return false;
        }
        FileDescriptor folder(::fcntl(level.folder.get(), F_DUPFD_CLOEXEC, 0));
        if (folder.isOpen()) {
            m_job.isIncomplete = true;
            ++m_progress[index].kept;
            m_job.offer({std::move(folder), level.status, level.pending.takeHalf(),
                         m_depthOfRoot + index, false});
        }
        return true;
    });
}

} // namespace

int TreeEmptier::empty(const FileDescriptor& folder, const EntryStatus& status,
                       const Limits& limits) const
{
    int error = 0;
    for (std::size_t pass = 0; pass < passLimit; ++pass) {
        // Only the first pass is shared: what it leaves is the bare frame of the tree.
        const auto job = std::make_shared<Job>(m_pool, pass == 0 ? m_helpers : 0, limits, status);
        FileDescriptor root(::openat(folder.get(), ".", openFolderFlags));
        if (!root.isOpen()) {
            return errno;
        }
        job->run({std::move(root), status, {}, 0, true});
        error = job->firstError;
        if (job->isOver || !job->isIncomplete) {
            return error;
        }
    }
    return error != 0 ? error : EBUSY;
}

} // namespace CleanCore
