#pragma once

#include "CleanCore/Support/TaskPool.h"

#include <atomic>
#include <condition_variable>
#include <deque>
#include <limits>
#include <memory>
#include <mutex>
#include <utility>

namespace CleanCore {

/// A large piece of work that is split while it is done: a thread that works on a piece gives a
/// part away when another one is idle. The thread that calls run() takes part and returns when all
/// is done; a pool's idle workers help.
///
/// Held by shared_ptr, so that a hanging helper may outlive the caller.
template <typename Piece>
class SharedWork : public std::enable_shared_from_this<SharedWork<Piece>>
{
public:
    static constexpr unsigned unlimited = std::numeric_limits<unsigned>::max();

    explicit SharedWork(std::shared_ptr<TaskPool> pool, unsigned helperLimit = unlimited)
        : m_pool(std::move(pool)), m_helperLimit(helperLimit)
    {
    }
    SharedWork(const SharedWork&) = delete;
    SharedWork& operator=(const SharedWork&) = delete;
    virtual ~SharedWork() = default;

    void run(Piece first)
    {
        offer(std::move(first));
        std::unique_lock lock(m_mutex);
        while (m_unfinished > 0) {
            if (workOnNext(lock)) {
                continue;
            }
            // Checked in a loop, as a helper may have taken the piece first.
            m_isCallerWaiting.store(true, std::memory_order_relaxed);
            m_changed.wait(lock);
            m_isCallerWaiting.store(false, std::memory_order_relaxed);
        }
    }

    /// Whether a thread is waiting for a part of this work. A hint.
    [[nodiscard]] bool wantsPieces() const
    {
        return m_isCallerWaiting.load(std::memory_order_relaxed) || wantsHelper();
    }

    void offer(Piece piece)
    {
        const std::lock_guard lock(m_mutex);
        m_pieces.push_back(std::move(piece));
        ++m_unfinished;
        m_isCallerWaiting.store(false, std::memory_order_relaxed);
        m_changed.notify_all();
        if (wantsHelper()) {
            m_helpers.fetch_add(1, std::memory_order_relaxed);
            m_pool->submit([self = this->shared_from_this()] { self->help(); });
        }
    }

protected:
    /// Works on one piece, on any thread. Must not throw.
    virtual void workOn(Piece piece) = 0;

private:
    [[nodiscard]] bool wantsHelper() const
    {
        return m_pool->hasIdleWorkers() &&
               m_helpers.load(std::memory_order_relaxed) < m_helperLimit;
    }

    void help()
    {
        std::unique_lock lock(m_mutex);
        while (workOnNext(lock)) {
        }
        m_helpers.fetch_sub(1, std::memory_order_relaxed);
    }

    bool workOnNext(std::unique_lock<std::mutex>& lock)
    {
        if (m_pieces.empty()) {
            return false;
        }
        Piece piece = std::move(m_pieces.front());
        m_pieces.pop_front();
        lock.unlock();
        workOn(std::move(piece));
        lock.lock();
        --m_unfinished;
        m_changed.notify_all();
        return true;
    }

    const std::shared_ptr<TaskPool> m_pool;
    const unsigned m_helperLimit;
    std::atomic<unsigned> m_helpers = 0;
    std::atomic<bool> m_isCallerWaiting = false;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<Piece> m_pieces;
    std::size_t m_unfinished = 0;
};

} // namespace CleanCore
