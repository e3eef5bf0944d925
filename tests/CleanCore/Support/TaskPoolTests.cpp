#include "CleanCore/Support/SharedWork.h"

#include <atomic>
#include <gtest/gtest.h>
#include <latch>
#include <numeric>
#include <thread>
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

TEST(TaskPool, DropsWhatItHasNotStartedWhenItGoesEvenOnOneOfItsOwnWorkers)
{
    const auto canGoOn = std::make_shared<std::latch>(1);
    const auto hasStarted = std::make_shared<std::latch>(1);
    const auto wasRun = std::make_shared<std::atomic<bool>>(false);
    auto pool = std::make_shared<TaskPool>(1);
    pool->submit([=, owner = std::make_shared<std::shared_ptr<TaskPool>>(pool)]() mutable {
        hasStarted->count_down();
        canGoOn->wait();
        owner->reset();
        hasStarted->wait();
    });
    pool->submit([wasRun] { wasRun->store(true); });
    hasStarted->wait();
    pool.reset();
    canGoOn->count_down();
    while (wasRun.use_count() > 1) {
        std::this_thread::yield();
    }
    EXPECT_FALSE(wasRun->load());
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

TEST(SharedWork, DoesEveryPieceOnceWithNoMoreHelpersThanItMay)
{
    constexpr int count = 50'000;
    constexpr unsigned callers = 3;
    for (const auto& [workers, helpers] :
         {std::pair(1U, Sum::unlimited), {2U, Sum::unlimited}, {8U, 0U}, {8U, 1U}, {8U, 3U}}) {
        const auto pool = std::make_shared<TaskPool>(workers);
        const auto isDone = std::make_shared<std::latch>(callers + 1);
        // More callers on the pool than it may have workers for, and one outside of it.
        const auto call = [=, most = helpers] {
            const auto sum = std::make_shared<Sum>(pool, most);
            sum->run({0, count});
            EXPECT_EQ(sum->total, std::int64_t{count} * (count - 1) / 2);
            EXPECT_LE(sum->mostAtOnce, std::uint64_t{most} + 1);
            isDone->count_down();
        };
        for (unsigned caller = 0; caller < callers; ++caller) {
            pool->submit(call);
        }
        call();
        isDone->wait();
    }
}

} // namespace CleanCoreTests
