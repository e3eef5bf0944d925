#pragma once

#include <functional>
#include <memory>

namespace CleanCore {

/// The core's worker threads, shared by everything that runs at the same time.
///
/// Work is balanced by splitting on demand: a large task checks hasIdleWorkers() now and then, and
/// submits a part of its remaining work when a worker is idle. Nothing is split while all workers
/// are busy.
///
/// Safe from any thread. A worker that hangs in the kernel (a dead network mount) is abandoned: the
/// destructor does not wait for it, so a task must own or share everything that it uses.
class TaskPool
{
public:
    using Task = std::function<void()>;

    /// `workers` threads; 0 sizes the pool from the machine.
    explicit TaskPool(unsigned workers = 0);
    ~TaskPool();
    TaskPool(const TaskPool&) = delete;
    TaskPool& operator=(const TaskPool&) = delete;

    /// Runs `task` on some worker, tasks in the order of their submission. A task must not throw.
    void submit(Task task);

    /// Whether a worker is idle. A hint: the answer may be outdated when it returns.
    [[nodiscard]] bool hasIdleWorkers() const;

    [[nodiscard]] unsigned workerCount() const;

private:
    struct Shared;
    static void work(const std::shared_ptr<Shared>& shared);
    std::shared_ptr<Shared> m_shared;
};

} // namespace CleanCore
