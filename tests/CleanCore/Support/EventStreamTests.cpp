#include "CleanCore/Support/EventStream.h"

#include <gtest/gtest.h>
#include <thread>
#include <vector>

namespace {

using CleanCore::EventSink;
using CleanCore::EventStream;

TEST(EventStream, DeliversEverythingFromEveryWriterInItsOrder)
{
    constexpr int writers = 4;
    constexpr int events = 5000;
    EventStream<std::pair<int, int>> stream;
    std::vector<std::thread> threads;
    threads.reserve(writers);
    for (int writer = 0; writer < writers; ++writer) {
        threads.emplace_back([writer, sink = stream.sink()] {
            for (int i = 0; i < events; ++i) {
                sink.send({writer, i});
            }
        });
    }
    std::vector<int> next(writers, 0);
    for (int i = 0; i < writers * events; ++i) {
        const auto event = stream.next();
        ASSERT_TRUE(event);
        EXPECT_EQ(event->second, next[static_cast<std::size_t>(event->first)]++);
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_FALSE(stream.tryNext());
    EXPECT_FALSE(stream.hasEnded());
}

TEST(EventStream, DeliversWhatWasWrittenBeforeItsEndAndNothingAfter)
{
    EventStream<int> stream;
    const EventSink<int> sink = stream.sink();
    sink.send(1);
    sink.send(2);
    sink.finish();
    sink.send(3);
    EXPECT_FALSE(stream.hasEnded());
    EXPECT_EQ(stream.next(), 1);
    EXPECT_EQ(stream.tryNext(), 2);
    EXPECT_TRUE(stream.hasEnded());
    EXPECT_FALSE(stream.tryNext());
    EXPECT_FALSE(stream.next());
    EXPECT_FALSE(sink.stopToken().stop_requested());
}

TEST(EventStream, DropsUnreadEventsAndStopsItsWritersWhenCancelled)
{
    EventStream<std::shared_ptr<int>> stream;
    const auto sink = stream.sink();
    const auto event = std::make_shared<int>(1);
    sink.send(event);
    stream.cancel();
    sink.send(event);
    EXPECT_EQ(event.use_count(), 1);
    EXPECT_TRUE(sink.stopToken().stop_requested());
    EXPECT_FALSE(stream.next());
}

TEST(EventStream, WakesAReaderThatWaitsWhenCancelledFromAnotherThread)
{
    EventStream<int> stream;
    std::thread other([&] { stream.cancel(); });
    EXPECT_FALSE(stream.next());
    other.join();
}

TEST(EventStream, StopsItsWritersWhenItIsDroppedButNotWhenItIsMoved)
{
    std::optional<EventSink<int>> sink;
    {
        EventStream<int> original;
        sink = original.sink();
        EventStream<int> moved = std::move(original);
        sink->send(5);
        EXPECT_EQ(moved.next(), 5);
        EXPECT_FALSE(sink->stopToken().stop_requested());

        EventStream<int> assigned;
        const EventSink<int> replaced = assigned.sink();
        assigned = EventStream<int>();
        EXPECT_TRUE(replaced.stopToken().stop_requested());
    }
    EXPECT_TRUE(sink->stopToken().stop_requested());
}

} // namespace
