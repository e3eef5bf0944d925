#include "CleanCore/FileSystem/Walking/TreeMeasurer.h"

#include "CleanCore/FileSystem/Descriptors.h"
#include "CleanCore/FileSystem/OpenWithoutLinks.h"
#include "CleanCore/FileSystem/Walking/DirectoryReader.h"
#include "CleanCore/FileSystem/Walking/FolderStack.h"
#include "CleanCore/Support/SharedWork.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <optional>
#include <utility>

namespace CleanCore {

namespace {

// All workers together have to stay below the usual limit of 1024 descriptors.
constexpr std::size_t openFolderLimit = 12;
constexpr unsigned entriesBetweenStopChecks = 64;

using SharedFolder = std::shared_ptr<const FileDescriptor>;

/// The sums of one entry; written by every worker that measures a part of it.
struct Total
{
    std::atomic<std::int64_t> sizeBytes = 0;
    std::atomic<std::int64_t> latest = distantPast.time_since_epoch().count();
    std::atomic<Obstacle> obstacle = Obstacle::none;
    std::optional<EntryIdentity> identity;
};

/// Raises `value` to `other` if that is more.
template <typename Value>
void raise(std::atomic<Value>& value, Value other)
{
    Value seen = value.load(std::memory_order_relaxed);
    while (seen < other && !value.compare_exchange_weak(seen, other, std::memory_order_relaxed)) {
    }
}

/// A part of the work that any worker can take: entries of the job, subfolders, or a batch of
/// names.
struct Piece
{
    SharedFolder folder;
    EntryStatus folderStatus;
    std::size_t entry = 0;
    // Entries [entry, lastEntry) of the job itself.
    std::size_t lastEntry = 0;
    // Subfolders of `folder` to be walked.
    NameList subfolders;
    // Names of `folder` that were read and not yet counted.
    std::optional<DirectoryReader> batch;
};

/// One call of measure(). Shared by its workers, so that one that hangs may outlive the call.
class Job : public SharedWork<Piece>
{
public:
    Job(std::shared_ptr<TaskPool> pool, std::span<const std::string> names,
        std::optional<uid_t> owner, std::stop_token stop)
        : SharedWork(std::move(pool)), totals(names.size()), names(names.begin(), names.end()),
          owner(owner), stop(std::move(stop))
    {
    }

    std::vector<Total> totals;
    const std::vector<std::string> names;
    const std::optional<uid_t> owner;
    const std::stop_token stop;

protected:
    void workOn(Piece piece) override;
};

/// Works through one piece on one thread.
class PieceWalk
{
public:
    explicit PieceWalk(Job& job) : m_job(job) {}
    void run(Piece piece);

private:
    void measureEntries(Piece& piece);
    void enterSubfolder(int parent, const EntryStatus& parentStatus, const std::string& name);
    void walk();
    void readTop();
    void count(int folder, const EntryStatus& folderStatus, const char* name, NameList& pending);
    void shareWork();
    void judge(const EntryStatus& status, const EntryStatus& folder);
    void note(Obstacle obstacle) { m_obstacle = std::max(m_obstacle, obstacle); }
    void flush(std::size_t entry);
    [[nodiscard]] bool isStopped();

    Job& m_job;
    DirectoryReader m_reader;
    FolderStack m_stack = FolderStack(openFolderLimit);
    // The entry of the job that is being measured.
    std::size_t m_entry = 0;
    std::int64_t m_sizeBytes = 0;
    Timestamp m_latest = distantPast;
    Obstacle m_obstacle = Obstacle::none;
    unsigned m_entriesSinceCheck = 0;
    bool m_hasStopped = false;
};

void Job::workOn(Piece piece)
{
    PieceWalk(*this).run(std::move(piece));
}

bool PieceWalk::isStopped()
{
    m_entriesSinceCheck = 0;
    m_hasStopped = m_hasStopped || m_job.stop.stop_requested();
    return m_hasStopped;
}

void PieceWalk::run(Piece piece)
{
    if (piece.lastEntry > 0) {
        measureEntries(piece);
        return;
    }
    m_entry = piece.entry;
    NameList pending = std::move(piece.subfolders);
    if (piece.batch) {
        piece.batch->forEach([&](const char* name) {
            count(piece.folder->get(), piece.folderStatus, name, pending);
            return !m_hasStopped;
        });
    }
    while (!pending.isEmpty() && !isStopped()) {
        if (pending.holdsSeveral() && m_job.wantsPieces()) {
            m_job.offer({piece.folder, piece.folderStatus, m_entry, 0, pending.takeHalf(), {}});
            continue;
        }
        enterSubfolder(piece.folder->get(), piece.folderStatus, pending.takeLast());
        walk();
    }
    flush(m_entry);
}

void PieceWalk::measureEntries(Piece& piece)
{
    for (std::size_t i = piece.entry; i < piece.lastEntry && !isStopped(); ++i) {
        if (piece.lastEntry - i > 1 && m_job.wantsPieces()) {
            const std::size_t middle = i + (piece.lastEntry - i) / 2;
            m_job.offer({piece.folder, piece.folderStatus, middle, piece.lastEntry, {}, {}});
            piece.lastEntry = middle;
        }
        EntryStatus status;
        if (readStatus(piece.folder->get(), m_job.names[i].c_str(), status) != 0) {
            m_job.totals[i].obstacle = Obstacle::notSeenWhole;
            continue;
        }
        m_entry = i;
        m_job.totals[i].identity = status.identity;
        judge(status, piece.folderStatus);
        m_latest = status.modifiedAt;
        if (status.isFolder()) {
            enterSubfolder(piece.folder->get(), piece.folderStatus, m_job.names[i]);
            walk();
        } else if (!status.isSymbolicLink() && !status.isBeyondBoundaryOf(piece.folderStatus)) {
            m_sizeBytes = status.allocatedBytes;
        }
        flush(i);
    }
}

/// Looks for what would keep a removal from taking this entry of `folder`.
void PieceWalk::judge(const EntryStatus& status, const EntryStatus& folder)
{
    if (status.owner != m_job.owner.value_or(status.owner) || status.isBeyondBoundaryOf(folder)) {
        note(Obstacle::foreignEntries);
    }
}

/// Opens a subfolder and reads it; it becomes the top of the stack.
void PieceWalk::enterSubfolder(int parent, const EntryStatus& parentStatus, const std::string& name)
{
    FileDescriptor folder = openFolder(parent, name.c_str());
    EntryStatus status;
    if (!folder.isOpen() || readStatus(folder.get(), "", status) != 0) {
        // A folder that has gone since its name was read is nothing that was missed.
        note(folder.isOpen() || errno != ENOENT ? Obstacle::notSeenWhole : Obstacle::none);
        return;
    }
    if (status.isBeyondBoundaryOf(parentStatus)) {
        note(Obstacle::foreignEntries);
        return;
    }
    m_stack.push(std::move(folder), status);
    readTop();
}

void PieceWalk::walk()
{
    while (!m_stack.isEmpty()) {
        if (isStopped()) {
            m_stack.clear();
            return;
        }
        if (m_job.wantsPieces()) {
            shareWork();
        }
        FolderStack::Level& level = m_stack.top();
        if (level.pending.isEmpty()) {
            if (!m_stack.pop()) {
                note(Obstacle::notSeenWhole);
                return;
            }
            continue;
        }
        const std::string name = level.pending.takeLast();
        enterSubfolder(level.folder.get(), level.status, name);
    }
}

void PieceWalk::readTop()
{
    SharedFolder handedOut;
    FolderStack::Level& level = m_stack.top();
    int more = 0;
    while ((more = m_reader.readBatch(level.folder.get())) > 0) {
        // A flat folder has no subfolders to share, so its names are shared.
        if (m_job.wantsPieces() && m_reader.isLarge()) {
            if (!handedOut) {
                handedOut = std::make_shared<const FileDescriptor>(duplicate(level.folder.get()));
            }
            if (handedOut->isOpen()) {
                m_job.offer({handedOut, level.status, m_entry, 0, {}, m_reader.takeBatch()});
                continue;
            }
        }
        m_reader.forEach([&](const char* name) {
            count(level.folder.get(), level.status, name, level.pending);
            return !m_hasStopped;
        });
        if (m_hasStopped) {
            return;
        }
    }
    if (more < 0) {
        note(Obstacle::notSeenWhole);
    }
}

void PieceWalk::count(int folder, const EntryStatus& folderStatus, const char* name,
                      NameList& pending)
{
    if (++m_entriesSinceCheck >= entriesBetweenStopChecks && isStopped()) {
        return;
    }
    EntryStatus status;
    if (const int error = readStatus(folder, name, status); error != 0) {
        note(error != ENOENT ? Obstacle::notSeenWhole : Obstacle::none);
        return;
    }
    judge(status, folderStatus);
    if (status.isSymbolicLink() || status.isBeyondBoundaryOf(folderStatus)) {
        return;
    }
    m_sizeBytes += status.allocatedBytes;
    m_latest = std::max(m_latest, status.modifiedAt);
    if (status.isFolder()) {
        pending.add(name);
    }
}

void PieceWalk::shareWork()
{
    if (std::optional<FolderStack::Share> share = m_stack.splitPending()) {
        m_job.offer({std::make_shared<const FileDescriptor>(std::move(share->folder)),
                     share->status,
                     m_entry,
                     0,
                     std::move(share->subfolders),
                     {}});
    }
}

void PieceWalk::flush(std::size_t entry)
{
    Total& total = m_job.totals[entry];
    total.sizeBytes.fetch_add(std::exchange(m_sizeBytes, 0), std::memory_order_relaxed);
    raise(total.latest, std::exchange(m_latest, distantPast).time_since_epoch().count());
    raise(total.obstacle, std::exchange(m_obstacle, Obstacle::none));
}

} // namespace

std::vector<EntryMeasure> TreeMeasurer::measure(FileDescriptor folder,
                                                std::span<const std::string> names,
                                                const std::stop_token& stop,
                                                std::optional<uid_t> owner) const
{
    std::vector<EntryMeasure> measures(names.size(),
                                       {0, distantPast, std::nullopt, Obstacle::notSeenWhole});
    EntryStatus status;
    if (names.empty() || readStatus(folder.get(), "", status) != 0) {
        return measures;
    }
    const auto job = std::make_shared<Job>(m_pool, names, owner, stop);
    job->run({std::make_shared<const FileDescriptor>(std::move(folder)),
              status,
              0,
              names.size(),
              {},
              {}});
    for (std::size_t i = 0; i < names.size(); ++i) {
        const Total& total = job->totals[i];
        measures[i] = {total.sizeBytes.load(std::memory_order_relaxed),
                       Timestamp(Timestamp::duration(total.latest.load(std::memory_order_relaxed))),
                       total.identity, total.obstacle};
    }
    return measures;
}

} // namespace CleanCore
