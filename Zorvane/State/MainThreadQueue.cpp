#include "Zorvane/State/MainThreadQueue.h"

#include <QPointer>
#include <cerrno>
#include <cstdint>
#include <sys/eventfd.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace Zorvane {

MainThreadQueue::MainThreadQueue() : m_wakeUp(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
{
    if (!m_wakeUp.isOpen()) {
        throw std::system_error(errno, std::generic_category(), "eventfd");
    }
}

void MainThreadQueue::post(Task task)
{
    const std::lock_guard lock(m_mutex);
    if (m_isClosed) {
        return;
    }
    m_tasks.push_back(std::move(task));
    if (m_tasks.size() == 1) {
        // The counter cannot overflow: taking the last task sets it to zero.
        const std::uint64_t one = 1;
        [[maybe_unused]] const auto written = ::write(m_wakeUp.get(), &one, sizeof one);
    }
}

std::optional<MainThreadQueue::Task> MainThreadQueue::takeFirst()
{
    const std::lock_guard lock(m_mutex);
    if (m_tasks.empty()) {
        return std::nullopt;
    }
    std::optional<Task> first(std::move(m_tasks.front()));
    m_tasks.pop_front();
    if (m_tasks.empty()) {
        std::uint64_t count = 0;
        [[maybe_unused]] const auto read = ::read(m_wakeUp.get(), &count, sizeof count);
    }
    return first;
}

void MainThreadQueue::close()
{
    std::deque<Task> dropped;
    const std::lock_guard lock(m_mutex);
    m_isClosed = true;
    dropped.swap(m_tasks);
}

MainThreadRunner::MainThreadRunner(std::shared_ptr<MainThreadQueue> queue, QObject* parent)
    : QObject(parent), m_queue(std::move(queue)),
      m_notifier(m_queue->m_wakeUp.get(), QSocketNotifier::Read)
{
    connect(&m_notifier, &QSocketNotifier::activated, this, &MainThreadRunner::runTasks);
}

MainThreadRunner::~MainThreadRunner()
{
    m_queue->close();
}

void MainThreadRunner::runTasks()
{
    // A task may destroy the application's state, and this runner with it.
    const QPointer<MainThreadRunner> self(this);
    const auto end = std::chrono::steady_clock::now() + longestTurn;
    do {
        const auto task = m_queue->takeFirst();
        if (!task) {
            return;
        }
        (*task)();
    } while (self && std::chrono::steady_clock::now() < end);
}

} // namespace Zorvane
