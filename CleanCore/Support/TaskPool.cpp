#include "CleanCore/Support/TaskPool.h"

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>

namespace CleanCore {

struct TaskPool::Shared
{
    std::mutex mutex;
    std::condition_variable hasWork;
    std::condition_variable workerLeft;
    std::deque<Task> tasks;
    bool isStopping = false;
    unsigned workerCount = 0;
    unsigned liveWorkers = 0;
    unsigned waitingWorkers = 0;
    // There are more waiting workers than queued tasks.
    std::atomic<int> idleWorkers = 0;

    void updateIdleWorkers()
    {
        idleWorkers.store(static_cast<int>(waitingWorkers) - static_cast<int>(tasks.size()),
                          std::memory_order_relaxed);
    }
};

TaskPool::TaskPool(unsigned workers) : m_shared(std::make_shared<Shared>())
{
    // More threads than cores hide the latency of a cold disk; by measurement, twice the cores is
    // best with a warm cache and close to best with a cold one.
    if (workers == 0) {
        workers = std::clamp(2 * std::thread::hardware_concurrency(), 4U, 32U);
    }
    m_shared->workerCount = workers;
    m_shared->liveWorkers = workers;
    for (unsigned i = 0; i < workers; ++i) {
        std::thread([shared = m_shared] { work(shared); }).detach();
    }
}

TaskPool::~TaskPool()
{
    std::deque<Task> unstarted;
    std::unique_lock lock(m_shared->mutex);
    m_shared->isStopping = true;
    unstarted.swap(m_shared->tasks);
    m_shared->hasWork.notify_all();
    // Long enough for a worker to notice its stop token, and too short to be noticed when one hangs
    // in the kernel.
    constexpr std::chrono::milliseconds grace(50);
    m_shared->workerLeft.wait_for(lock, grace, [&] { return m_shared->liveWorkers == 0; });
}

void TaskPool::submit(Task task)
{
    const std::lock_guard lock(m_shared->mutex);
    m_shared->tasks.push_back(std::move(task));
    m_shared->updateIdleWorkers();
    m_shared->hasWork.notify_one();
}

bool TaskPool::hasIdleWorkers() const
{
    return m_shared->idleWorkers.load(std::memory_order_relaxed) > 0;
}

unsigned TaskPool::workerCount() const
{
    return m_shared->workerCount;
}

void TaskPool::work(const std::shared_ptr<Shared>& shared)
{
    std::unique_lock lock(shared->mutex);
    while (!shared->isStopping) {
        if (shared->tasks.empty()) {
            ++shared->waitingWorkers;
            shared->updateIdleWorkers();
            shared->hasWork.wait(lock,
                                 [&] { return !shared->tasks.empty() || shared->isStopping; });
            --shared->waitingWorkers;
            shared->updateIdleWorkers();
            continue;
        }
        Task task = std::move(shared->tasks.front());
        shared->tasks.pop_front();
        shared->updateIdleWorkers();
        lock.unlock();
        task();
        task = nullptr;
        lock.lock();
    }
    --shared->liveWorkers;
    shared->workerLeft.notify_all();
}

} // namespace CleanCore
