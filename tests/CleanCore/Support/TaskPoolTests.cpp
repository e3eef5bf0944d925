#include "CleanCore/Support/TaskPool.h"

#include <atomic>
#include <gtest/gtest.h>
#include <latch>
#include <numeric>
#include <vector>

namespace CleanCoreTests {

using namespace CleanCore;

TEST(TaskPool, StartsTasksInOrderAndAsManyAtOnceAsItHasWorkers)
{
    std::vector<int> order;
    std::latch isDone(1);
    TaskPool single(1);
    for (int i = 0; i < 100; ++i) {
        single.submit([&, i] { order.push_back(i); });
    }
    single.submit([&] { isDone.count_down(); });
    isDone.wait();
    std::vector<int> expected(100);
    std::iota(expected.begin(), expected.end(), 0);
    EXPECT_EQ(order, expected);

    TaskPool several(3);
    const auto meeting = std::make_shared<std::latch>(4);
    for (int i = 0; i < 3; ++i) {
        several.submit([meeting] { meeting->arrive_and_wait(); });
    }
    meeting->arrive_and_wait();
}

TEST(TaskPool, DropsWhatItHasNotStartedWhenItGoes)
{
    const auto canGoOn = std::make_shared<std::latch>(1);
    const auto hasStarted = std::make_shared<std::latch>(1);
    const auto wasRun = std::make_shared<std::atomic<bool>>(false);
    {
        TaskPool pool(1);
        pool.submit([=] {
            hasStarted->count_down();
            canGoOn->wait();
        });
        pool.submit([wasRun] { wasRun->store(true); });
        hasStarted->wait();
    }
    EXPECT_EQ(wasRun.use_count(), 1);
    EXPECT_FALSE(wasRun->load());
    canGoOn->count_down();
}

TEST(TaskPool, MayBeDestroyedByOneOfItsOwnWorkers)
{
    auto pool = std::make_shared<TaskPool>(2);
    std::latch isDone(1);
    pool->submit([owner = std::make_shared<std::shared_ptr<TaskPool>>(pool), &isDone] {
        owner->reset();
        isDone.count_down();
    });
    pool.reset();
    isDone.wait();
}

} // namespace CleanCoreTests
