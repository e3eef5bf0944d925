#include "CleanCore/Support/EventStream.h"
#include "CleanCore/Support/TaskPool.h"

#include <atomic>
#include <functional>
#include <gtest/gtest.h>
#include <latch>
#include <thread>

namespace CleanCoreTests {

using namespace CleanCore;

TEST(EventStream, DeliversEveryEventBeforeTheEndInItsWritersOrder)
{
    EventStream<std::pair<std::size_t, int>> stream;
    std::vector<std::jthread> threads;
    for (std::size_t writer = 0; writer < 4; ++writer) {
        threads.emplace_back([writer, sink = stream.sink()] {
            for (int i = 0; i < 5000; ++i) {
                sink.send({writer, i});
            }
        });
    }
    std::vector<int> next(4, 0);
    for (int i = 0; i < 20'000; ++i) {
        const auto event = stream.next().value();
        EXPECT_EQ(event.second, next[event.first]++);
    }
    const auto sink = stream.sink();
    sink.send({0, 1});
    sink.finish();
    sink.send({0, 0});
    EXPECT_EQ(stream.next(), std::pair(std::size_t{0}, 1));
    EXPECT_FALSE(stream.next());
    EXPECT_FALSE(sink.stopToken().stop_requested());
}

TEST(EventStream, StopsItsWritersAndKeepsNothingWhenItsReaderLeaves)
{
    using Stream = EventStream<std::shared_ptr<int>>;
    const std::function<void(Stream&)> ways[] = {
        [](Stream& stream) { stream.cancel(); },
        [](Stream& stream) { stream = Stream(); },
        [](Stream& stream) {
            static_cast<void>(stream.next());
            const std::jthread other([&] { stream.cancel(); });
            EXPECT_FALSE(stream.next());
        },
    };
    for (const auto& leave : ways) {
        Stream stream;
        const auto sink = stream.sink();
        const auto event = std::make_shared<int>(1);
        sink.send(event);
        leave(stream);
        sink.send(event);
        EXPECT_EQ(event.use_count(), 1);
        EXPECT_TRUE(sink.stopToken().stop_requested());
    }
}

TEST(TaskPool, RunsAsManyTasksAtOnceAsItHasWorkersAndDropsTheOthersWhenItGoes)
{
    const auto canGoOn = std::make_shared<std::latch>(1);
    const auto hasStarted = std::make_shared<std::latch>(3);
    const auto wasRun = std::make_shared<std::atomic<bool>>(false);
    {
        TaskPool pool(3);
        for (int i = 0; i < 3; ++i) {
            pool.submit([=] {
                hasStarted->count_down();
                canGoOn->wait();
            });
        }
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
