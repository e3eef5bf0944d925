#include "Zorvane/State/MainThreadQueue.h"
#include "tests/Zorvane/Support/ScriptedApplication.h"

#include <QCoreApplication>
#include <gtest/gtest.h>
#include <thread>

namespace ZorvaneTests {
namespace {

using Zorvane::MainThreadQueue;
using Zorvane::MainThreadRunner;

struct Queue
{
    std::shared_ptr<MainThreadQueue> queue = std::make_shared<MainThreadQueue>();
    std::unique_ptr<MainThreadRunner> runner = std::make_unique<MainThreadRunner>(queue);
    /// Each task that runs adds a letter.
    std::string order;

    void post(char letter)
    {
        queue->post([this, letter] { order += letter; });
    }
};

TEST(MainThreadQueue, RunsTheTasksOfEachThreadInOrderOnTheMainThread)
{
    constexpr int tasks = 1000;
    Queue main;
    std::vector<int> received[4];
    std::set<std::thread::id> ids;
    std::vector<std::jthread> threads;
    for (auto& numbers : received) {
        threads.emplace_back([&] {
            for (int task = 0; task < tasks; ++task) {
                main.queue->post([&, task] {
                    numbers.push_back(task);
                    ids.insert(std::this_thread::get_id());
                });
            }
        });
    }
    for (const auto& numbers : received) {
        waitUntil([&] { return numbers.size() == tasks; });
        EXPECT_TRUE(std::ranges::is_sorted(numbers));
    }
    EXPECT_EQ(ids, std::set{std::this_thread::get_id()});
}

TEST(MainThreadQueue, LetsOtherEventsHaveTheirTurn)
{
    Queue main;
    main.queue->post([&] {
        QMetaObject::invokeMethod(
            main.runner.get(), [&] { main.order += 'e'; }, Qt::QueuedConnection);
        const auto end = std::chrono::steady_clock::now() + 2 * MainThreadRunner::longestTurn;
        while (std::chrono::steady_clock::now() < end) {
        }
    });
    main.post('2');
    waitUntil([&] { return main.order.size() == 2; });
    EXPECT_EQ(main.order, "e2");
}

TEST(MainThreadQueue, DropsTasksWithoutARunner)
{
    Queue main;
    const auto held = std::make_shared<int>(0);
    main.queue->post([&] { main.runner.reset(); });
    main.queue->post([&, held] { main.order += 'a'; });
    waitUntil([&] { return main.runner == nullptr; });
    main.queue->post([&, held] { main.order += 'b'; });
    QCoreApplication::processEvents();
    EXPECT_EQ(main.order, "");
    EXPECT_EQ(held.use_count(), 1);
}

} // namespace
} // namespace ZorvaneTests
