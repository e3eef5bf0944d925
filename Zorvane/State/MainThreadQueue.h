#pragma once

#include "CleanCore/Support/FileDescriptor.h"

#include <QObject>
#include <QSocketNotifier>
#include <chrono>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>

namespace Zorvane {

/// How workers reach the main thread: they post tasks, closures that hold everything they need by
/// value, and the main thread runs them in the order in which they were posted.
///
/// Workers share the queue and may outlive its runner; tasks posted after that are dropped.
/// Posting is safe from any thread and uses nothing of Qt.
class MainThreadQueue
{
public:
    using Task = std::function<void()>;

    /// Throws std::system_error when the process has no descriptors left.
    MainThreadQueue();

    void post(Task task);

private:
    friend class MainThreadRunner;
    /// The oldest task, if there is one.
    [[nodiscard]] std::optional<Task> takeFirst();
    /// Drops all tasks, now and from now on.
    void close();

    /// Readable while there are tasks.
    CleanCore::FileDescriptor m_wakeUp;
    std::mutex m_mutex;
    std::deque<Task> m_tasks;
    bool m_isClosed = false;
};

/// Runs the tasks of a queue on the thread that made the runner and that has an event loop. No task
/// runs once the runner is gone.
class MainThreadRunner : public QObject
{
    Q_OBJECT
public:
    /// After running tasks for this long the runner lets the event loop handle other events. It is
    /// half the time of a frame.
    static constexpr std::chrono::milliseconds longestTurn{8};

    explicit MainThreadRunner(std::shared_ptr<MainThreadQueue> queue, QObject* parent = nullptr);
    ~MainThreadRunner() override;

private:
    void runTasks();

    std::shared_ptr<MainThreadQueue> m_queue;
    QSocketNotifier m_notifier;
};

} // namespace Zorvane
