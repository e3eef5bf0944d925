#include "Zorvane/State/MainThreadQueue.h"
#include "tests/Zorvane/Support/ScriptedApplication.h"

#include <QCoreApplication>
#include <gtest/gtest.h>

namespace ZorvaneTests {
namespace {

using Zorvane::MainThreadRunner;

struct MainThreadQueue : testing::Test
{
    std::shared_ptr<Zorvane::MainThreadQueue> queue = std::make_shared<Zorvane::MainThreadQueue>();
    std::unique_ptr<MainThreadRunner> runner = std::make_unique<MainThreadRunner>(queue);
    /// The tasks that ran.
    std::string order;
};

TEST_F(MainThreadQueue, LetsOtherEventsHaveTheirTurn)
{
    queue->post([&] {
        QMetaObject::invokeMethod(
            runner.get(), [&] { order += "event "; }, Qt::QueuedConnection);
        const auto end = std::chrono::steady_clock::now() + 2 * MainThreadRunner::longestTurn;
        while (std::chrono::steady_clock::now() < end) {
        }
    });
    queue->post([&] { order += "task "; });
    waitUntil([&] { return order.size() == 11; });
    EXPECT_EQ(order, "event task ");
}

TEST_F(MainThreadQueue, DropsTasksWithoutARunner)
{
    const auto held = std::make_shared<int>(0);
    queue->post([&] { runner.reset(); });
    queue->post([&, held] { order += "second "; });
    waitUntil([&] { return runner == nullptr; });
    queue->post([&, held] { order += "third "; });
    QCoreApplication::processEvents();
    EXPECT_EQ(order, "");
    EXPECT_EQ(held.use_count(), 1);
}

} // namespace
} // namespace ZorvaneTests
