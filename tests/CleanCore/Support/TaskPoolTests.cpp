#include "CleanCore/Support/TaskPool.h"

#include "CleanCore/Support/SharedWork.h"

#include <atomic>
#include <future>
#include <gtest/gtest.h>
#include <latch>
#include <numeric>
#include <vector>

namespace {

using namespace CleanCore;

TEST(TaskPool, StartsTasksInTheOrderOfTheirSubmission)
{
    TaskPool pool(1);
    std::vector<int> order;
    std::promise<void> isDone;
    for (int i = 0; i < 100; ++i) {
        pool.submit([&, i] { order.push_back(i); });
    }
    pool.submit([&] { isDone.set_value(); });
    isDone.get_future().wait();
    std::vector<int> expected(100);
    std::iota(expected.begin(), expected.end(), 0);
    EXPECT_EQ(order, expected);
}

TEST(TaskPool, RunsAsManyTasksAtOnceAsItHasWorkers)
{
    TaskPool pool(3);
    EXPECT_EQ(pool.workerCount(), 3U);
    EXPECT_GE(TaskPool().workerCount(), 1U);
    const auto meeting = std::make_shared<std::latch>(4);
    for (int i = 0; i < 3; ++i) {
        pool.submit([meeting] { meeting->arrive_and_wait(); });
    }
    meeting->arrive_and_wait();
}

TEST(TaskPool, DropsWhatItHasNotStartedWhenItIsDestroyed)
{
    const auto canGoOn = std::make_shared<std::latch>(1);
    const auto hasStarted = std::make_shared<std::latch>(1);
    const auto wasRun = std::make_shared<std::atomic<bool>>(false);
    const std::weak_ptr<std::atomic<bool>> watched = wasRun;
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
    std::promise<void> isDone;
    pool->submit([owner = std::make_shared<std::shared_ptr<TaskPool>>(pool), &isDone] {
        owner->reset();
        isDone.set_value();
    });
    pool.reset();
    isDone.get_future().wait();
}

/// Adds up the numbers of a range, giving half away whenever somebody waits.
class Sum : public SharedWork<std::pair<int, int>>
{
public:
    using SharedWork::SharedWork;
    std::atomic<std::int64_t> total = 0;
    /// The largest number of threads that worked at the same time.
    std::atomic<unsigned> mostAtOnce = 0;

protected:
    void workOn(std::pair<int, int> range) override
    {
        const unsigned working = ++m_working;
        for (unsigned most = mostAtOnce; most < working;) {
            mostAtOnce.compare_exchange_weak(most, working);
        }
        for (auto [from, to] = range; from < to; ++from) {
            if (to - from > 1 && wantsPieces()) {
                const int middle = from + (to - from) / 2;
                offer({middle, to});
                to = middle;
            }
            total += from;
        }
        --m_working;
    }

private:
    std::atomic<unsigned> m_working = 0;
};

TEST(SharedWork, DoesEveryPieceOnceWhoeverCallsIt)
{
    constexpr int count = 20'000;
    for (const unsigned workers : {1U, 2U, 8U}) {
        const auto pool = std::make_shared<TaskPool>(workers);
        const auto isDone = std::make_shared<std::latch>(4);
        std::atomic<int> right = 0;
        // More callers on the pool than it has workers for, and one outside of it.
        for (int caller = 0; caller < 3; ++caller) {
            pool->submit([&, pool, isDone] {
                const auto sum = std::make_shared<Sum>(pool);
                sum->run({0, count});
                right += sum->total == std::int64_t{count} * (count - 1) / 2 ? 1 : 0;
                isDone->count_down();
            });
        }
        const auto sum = std::make_shared<Sum>(pool);
        sum->run({0, count});
        EXPECT_EQ(sum->total, std::int64_t{count} * (count - 1) / 2);
        isDone->arrive_and_wait();
        EXPECT_EQ(right, 3);
    }
}

TEST(SharedWork, TakesNoMoreHelpersThanItMay)
{
    constexpr int count = 200'000;
    const auto pool = std::make_shared<TaskPool>(8);
    for (const unsigned helpers : {0U, 1U, 3U}) {
        for (int round = 0; round < 10; ++round) {
            const auto sum = std::make_shared<Sum>(pool, helpers);
            sum->run({0, count});
            EXPECT_EQ(sum->total, std::int64_t{count} * (count - 1) / 2);
            EXPECT_LE(sum->mostAtOnce, helpers + 1);
        }
    }
}

} // namespace
