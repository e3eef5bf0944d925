#pragma once

#include "CleanCore/FileSystem/Descriptors.h"
#include "CleanCore/FileSystem/EntryStatus.h"
#include "CleanCore/FileSystem/OpenWithoutLinks.h"
#include "CleanCore/FileSystem/Walking/DirectoryReader.h"
#include "CleanCore/FileSystem/Walking/FolderStack.h"
#include "CleanCore/FileSystem/Walking/NameList.h"
#include "CleanCore/Support/FileDescriptor.h"
#include "CleanCore/Support/SharedWork.h"

#include <cerrno>
#include <cstddef>
#include <memory>
#include <optional>
#include <span>
#include <stop_token>
#include <string>
#include <utility>
#include <vector>

namespace CleanCore {

/// A part of a walk that any worker can take: entries of the walk itself, subfolders, or a batch of
/// names.
struct WalkPiece
{
    std::shared_ptr<const FileDescriptor> folder;
    EntryStatus folderStatus;
    std::size_t entry = 0;
    /// Entries [entry, lastEntry) of the walk itself.
    std::size_t lastEntry = 0;
    /// Subfolders of `folder` to be entered.
    NameList subfolders;
    /// Names of `folder` that were read and not yet looked at.
    std::optional<DirectoryReader> batch;
};

/// A walk over entries of one folder with everything below them, by all workers of a pool. Links
/// are not followed and other mounts not entered.
///
/// `Tally` is the work that is done on the way. `Tally::Totals` is shared by all workers; each
/// makes a tally of its own from it for a piece, which is told of:
///   begin(entry, folder, name, status, isBeyond)  one of the entries walked over, by its position
///   add(folder, name, status, isBeyond)           an entry below it
///   miss(error)        an entry below, or a folder's content, that could not be read (errno, or 0)
///   meetMount()        a folder below that turned out to be a mount when it was opened
///   flush(entry)       the tally has to give its findings about this entry to the totals
/// `isBeyond`: a boundary lies between the entry and its folder, so that nothing in it is reached.
///
/// Held by shared_ptr, so that a worker that hangs may outlive the call of walk().
template <typename Tally>
class EntryWalk : public SharedWork<WalkPiece>
{
public:
    using Totals = typename Tally::Totals;

    EntryWalk(std::shared_ptr<TaskPool> pool, std::span<const std::string> names,
              std::stop_token stop, Totals totals)
        : SharedWork(std::move(pool)), m_names(names.begin(), names.end()), m_stop(std::move(stop)),
          m_totals(std::move(totals))
    {
    }

    /// Walks over all names, read relative to `folder`. The calling thread takes part and may be a
    /// worker of the pool. Ends within a few dozen entries of a stop request.
    void walk(FileDescriptor folder, const EntryStatus& status)
    {
        run({std::make_shared<const FileDescriptor>(std::move(folder)),
             status,
             0,
             m_names.size(),
             {},
             {}});
    }

    [[nodiscard]] Totals& totals() { return m_totals; }

protected:
    void workOn(WalkPiece piece) override { Worker(*this).run(std::move(piece)); }

private:
    class Worker;

    const std::vector<std::string> m_names;
    const std::stop_token m_stop;
    Totals m_totals;
};

/// Works through one piece on one thread.
template <typename Tally>
class EntryWalk<Tally>::Worker
{
public:
    explicit Worker(EntryWalk& walk) : m_walk(walk), m_tally(walk.m_totals) {}

    void run(WalkPiece piece)
    {
        if (piece.lastEntry > 0) {
            walkEntries(piece);
            return;
        }
        m_entry = piece.entry;
        NameList pending = std::move(piece.subfolders);
        if (piece.batch) {
            piece.batch->forEach([&](const char* name) {
                add(piece.folder->get(), piece.folderStatus, name, pending);
                return !m_hasStopped;
            });
        }
        while (!pending.isEmpty() && !isStopped()) {
            if (pending.holdsSeveral() && m_walk.wantsPieces()) {
                m_walk.offer(
                    {piece.folder, piece.folderStatus, m_entry, 0, pending.takeHalf(), {}});
                continue;
            }
            enterSubfolder(piece.folder->get(), piece.folderStatus, pending.takeLast());
            walkStack();
        }
        m_tally.flush(m_entry);
    }

private:
    // All workers together have to stay below the usual limit of 1024 descriptors.
    static constexpr std::size_t openFolderLimit = 12;
    static constexpr unsigned entriesBetweenStopChecks = 64;

    bool isStopped()
    {
        m_entriesSinceCheck = 0;
        m_hasStopped = m_hasStopped || m_walk.m_stop.stop_requested();
        return m_hasStopped;
    }

    void walkEntries(WalkPiece& piece)
    {
        for (std::size_t i = piece.entry; i < piece.lastEntry && !isStopped(); ++i) {
            if (piece.lastEntry - i > 1 && m_walk.wantsPieces()) {
                const std::size_t middle = i + (piece.lastEntry - i) / 2;
                m_walk.offer({piece.folder, piece.folderStatus, middle, piece.lastEntry, {}, {}});
                piece.lastEntry = middle;
            }
            m_entry = i;
            const std::string& name = m_walk.m_names[i];
            EntryStatus status;
            if (const int error = readStatus(piece.folder->get(), name.c_str(), status);
                error != 0) {
                // An entry that the walk was asked for counts as missed even if it has gone.
                m_tally.miss(error == ENOENT ? 0 : error);
            } else {
                m_tally.begin(i, piece.folder->get(), name.c_str(), status,
                              status.isBeyondBoundaryOf(piece.folderStatus));
                if (status.isFolder()) {
                    enterSubfolder(piece.folder->get(), piece.folderStatus, name);
                    walkStack();
                }
            }
            m_tally.flush(i);
        }
    }

    /// Opens a subfolder and reads it; it becomes the top of the stack.
    void enterSubfolder(int parent, const EntryStatus& parentStatus, const std::string& name)
    {
        FileDescriptor folder = openFolder(parent, name.c_str());
        EntryStatus status;
        if (!folder.isOpen()) {
            m_tally.miss(errno);
        } else if (readStatus(folder.get(), "", status) != 0) {
            m_tally.miss(0);
        } else if (status.isBeyondBoundaryOf(parentStatus)) {
            m_tally.meetMount();
        } else {
            m_stack.push(std::move(folder), status);
            readTop();
        }
    }

    void walkStack()
    {
        while (!m_stack.isEmpty()) {
            if (isStopped()) {
                m_stack.clear();
                return;
            }
            if (m_walk.wantsPieces()) {
                shareWork();
            }
            FolderStack::Level& level = m_stack.top();
            if (level.pending.isEmpty()) {
                if (!m_stack.pop()) {
                    m_tally.miss(0);
                    return;
                }
                continue;
            }
            const std::string name = level.pending.takeLast();
            enterSubfolder(level.folder.get(), level.status, name);
        }
    }

    void readTop()
    {
        std::shared_ptr<const FileDescriptor> handedOut;
        FolderStack::Level& level = m_stack.top();
        int more = 0;
        while ((more = m_reader.readBatch(level.folder.get())) > 0) {
            // A flat folder has no subfolders to share, so its names are shared.
            if (m_walk.wantsPieces() && m_reader.isLarge()) {
                if (!handedOut) {
                    handedOut =
                        std::make_shared<const FileDescriptor>(duplicate(level.folder.get()));
                }
                if (handedOut->isOpen()) {
                    m_walk.offer({handedOut, level.status, m_entry, 0, {}, m_reader.takeBatch()});
                    continue;
                }
            }
            m_reader.forEach([&](const char* name) {
                add(level.folder.get(), level.status, name, level.pending);
                return !m_hasStopped;
            });
            if (m_hasStopped) {
                return;
            }
        }
        if (more < 0) {
            m_tally.miss(-more == ENOENT ? 0 : -more);
        }
    }

    void add(int folder, const EntryStatus& folderStatus, const char* name, NameList& pending)
    {
        if (++m_entriesSinceCheck >= entriesBetweenStopChecks && isStopped()) {
            return;
        }
        EntryStatus status;
        if (const int error = readStatus(folder, name, status); error != 0) {
            m_tally.miss(error);
            return;
        }
        const bool isBeyond = status.isBeyondBoundaryOf(folderStatus);
        m_tally.add(folder, name, status, isBeyond);
        if (status.isFolder() && !isBeyond) {
            pending.add(name);
        }
    }

    void shareWork()
    {
        if (std::optional<FolderStack::Share> share = m_stack.splitPending()) {
            m_walk.offer({std::make_shared<const FileDescriptor>(std::move(share->folder)),
                          share->status,
                          m_entry,
                          0,
                          std::move(share->subfolders),
                          {}});
        }
    }

    EntryWalk& m_walk;
    Tally m_tally;
    DirectoryReader m_reader;
    FolderStack m_stack = FolderStack(openFolderLimit);
    // The entry of the walk that this is about.
    std::size_t m_entry = 0;
    unsigned m_entriesSinceCheck = 0;
    bool m_hasStopped = false;
};

} // namespace CleanCore
