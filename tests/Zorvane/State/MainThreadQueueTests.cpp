#include "Zorvane/State/MainThreadQueue.h"
#include "tests/Zorvane/Support/ScriptedApplication.h"

#include <QCoreApplication>
#include <array>
#include <chrono>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace ZorvaneTests {
namespace {

using Zorvane::MainThreadQueue;
using Zorvane::MainThreadRunner;

TEST(MainThreadQueueTest, RunsTasksOfManyThreadsOnTheReadersThreadInEachSendersOrder)
{
    constexpr int senders = 4;
    constexpr int tasks = 1000;
    const auto queue = std::make_shared<MainThreadQueue>();
    const MainThreadRunner reader(queue);
    std::array<int, senders> next = {};
    int received = 0;
    int strangers = 0;
    int outOfTurn = 0;
    const auto mainThread = std::this_thread::get_id();
    std::vector<std::jthread> threads;
    threads.reserve(senders);
    for (int& expected : next) {
        threads.emplace_back([&] {
            for (int task = 0; task < tasks; ++task) {
                queue->post([&, task] {
                    ++received;
                    outOfTurn += expected++ == task ? 0 : 1;
                    strangers += std::this_thread::get_id() == mainThread ? 0 : 1;
                });
            }
        });
    }
    waitUntil([&] { return received == senders * tasks; });
    EXPECT_EQ(strangers, 0);
    EXPECT_EQ(outOfTurn, 0);
}

TEST(MainThreadQueueTest, LetsOtherEventsHaveTheirTurnBetweenTasks)
{
    const auto queue = std::make_shared<MainThreadQueue>();
    const MainThreadRunner reader(queue);
    QObject receiver;
    std::string order;
    const auto takeLong = [] {
        const auto end = std::chrono::steady_clock::now() + 2 * MainThreadRunner::longestTurn;
        while (std::chrono::steady_clock::now() < end) {
        }
    };
    queue->post([&] {
        QMetaObject::invokeMethod(
            &receiver, [&] { order += "event "; }, Qt::QueuedConnection);
        takeLong();
        order += "first ";
    });
    queue->post([&] { order += "second "; });
    queue->post([&] { order += "last"; });
    waitUntil([&] { return order.ends_with("last"); });
    EXPECT_EQ(order, "first event second last");
}

TEST(MainThreadQueueTest, DropsWhatComesAfterItsReaderHasGone)
{
    const auto queue = std::make_shared<MainThreadQueue>();
    auto reader = std::make_unique<MainThreadRunner>(queue);
    const auto held = std::make_shared<int>(0);
    bool hasRun = false;
    queue->post([&, held] { hasRun = true; });
    reader.reset();
    queue->post([&, held] { hasRun = true; });
    QCoreApplication::processEvents();
    EXPECT_FALSE(hasRun);
    EXPECT_EQ(held.use_count(), 1);
}

TEST(MainThreadQueueTest, LetsATaskEndTheReader)
{
    const auto queue = std::make_shared<MainThreadQueue>();
    auto reader = std::make_unique<MainThreadRunner>(queue);
    bool hasRun = false;
    queue->post([&] { reader.reset(); });
    queue->post([&] { hasRun = true; });
    waitUntil([&] { return reader == nullptr; });
    EXPECT_FALSE(hasRun);
}

} // namespace
} // namespace ZorvaneTests
