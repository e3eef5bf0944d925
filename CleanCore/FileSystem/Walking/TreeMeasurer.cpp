#include "CleanCore/FileSystem/Walking/TreeMeasurer.h"

#include "CleanCore/FileSystem/Walking/EntryWalk.h"

#include <algorithm>
#include <atomic>
#include <utility>

namespace CleanCore {

namespace {

/// Raises `value` to `other` if that is more.
template <typename Value>
void raise(std::atomic<Value>& value, Value other)
{
    Value seen = value.load(std::memory_order_relaxed);
    while (seen < other && !value.compare_exchange_weak(seen, other, std::memory_order_relaxed)) {
    }
}

/// The sums of one entry; written by every worker that measures a part of it.
struct Total
{
    std::atomic<std::int64_t> sizeBytes = 0;
    std::atomic<std::int64_t> latest = distantPast.time_since_epoch().count();
    std::atomic<Obstacle> obstacle = Obstacle::none;
    std::optional<EntryIdentity> identity;
};

/// Adds up sizes and looks for what would keep a removal from taking all of an entry.
class SizeTally
{
public:
    struct Totals
    {
        std::vector<Total> entries;
        std::optional<uid_t> owner;
    };

    explicit SizeTally(Totals& totals) : m_totals(totals) {}

    void begin(std::size_t entry, int /*folder*/, const char* /*name*/, const EntryStatus& status,
               bool isBeyond)
    {
        m_totals.entries[entry].identity = status.identity;
        judge(status, isBeyond);
        m_latest = status.modifiedAt;
        if (!status.isFolder() && !status.isSymbolicLink() && !isBeyond) {
            m_sizeBytes = status.allocatedBytes;
        }
    }

    void add(int /*folder*/, const char* /*name*/, const EntryStatus& status, bool isBeyond)
    {
        judge(status, isBeyond);
        if (!status.isSymbolicLink() && !isBeyond) {
            m_sizeBytes += status.allocatedBytes;
            m_latest = std::max(m_latest, status.modifiedAt);
        }
    }

    void miss(int error)
    {
        // An entry that has gone since its name was read is nothing that was missed.
        note(error != ENOENT ? Obstacle::notSeenWhole : Obstacle::none);
    }

    void meetMount() { note(Obstacle::foreignEntries); }

    void flush(std::size_t entry)
    {
        Total& total = m_totals.entries[entry];
        total.sizeBytes.fetch_add(std::exchange(m_sizeBytes, 0), std::memory_order_relaxed);
        raise(total.latest, std::exchange(m_latest, distantPast).time_since_epoch().count());
        raise(total.obstacle, std::exchange(m_obstacle, Obstacle::none));
    }

private:
    void judge(const EntryStatus& status, bool isBeyond)
    {
        if (status.owner != m_totals.owner.value_or(status.owner) || isBeyond) {
            note(Obstacle::foreignEntries);
        }
    }

    void note(Obstacle obstacle) { m_obstacle = std::max(m_obstacle, obstacle); }

    Totals& m_totals;
    std::int64_t m_sizeBytes = 0;
    Timestamp m_latest = distantPast;
    Obstacle m_obstacle = Obstacle::none;
};

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
    const auto walk = std::make_shared<EntryWalk<SizeTally>>(
        m_pool, names, stop, SizeTally::Totals{std::vector<Total>(names.size()), owner});
    walk->walk(std::move(folder), status);
    for (std::size_t i = 0; i < names.size(); ++i) {
        const Total& total = walk->totals().entries[i];
        measures[i] = {total.sizeBytes.load(std::memory_order_relaxed),
                       Timestamp(Timestamp::duration(total.latest.load(std::memory_order_relaxed))),
                       total.identity, total.obstacle};
    }
    return measures;
}

} // namespace CleanCore
