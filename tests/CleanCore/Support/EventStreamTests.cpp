#include "CleanCore/Support/EventStream.h"

#include <functional>
#include <gtest/gtest.h>

#include <thread>
#include <vector>

namespace CleanCoreTests {

using CleanCore::EventStream;

TEST(EventStream, DeliversWhatEveryWriterWroteBeforeTheEndInItsOrder)
{
    constexpr int writers = 4;
    constexpr int events = 5000;
    EventStream<std::pair<int, int>> original;
    EventStream<std::pair<int, int>> stream = std::move(original);
    std::vector<std::jthread> threads;
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
    const auto sink = stream.sink();
    sink.send({0, events});
    sink.finish();
    sink.send({0, 0});
    EXPECT_EQ(stream.next(), std::pair(0, events));
    EXPECT_FALSE(stream.next());
    EXPECT_FALSE(sink.stopToken().stop_requested());
}

TEST(EventStream, StopsItsWritersAndKeepsNothingWhenItsReaderLeaves)
{
    using Stream = EventStream<std::shared_ptr<int>>;
    const std::function<void(Stream&)> ways[] = {
        [](Stream& stream) { stream.cancel(); },
        [](Stream& stream) { stream = Stream(); },
        [](Stream& stream) { const Stream dropped = std::move(stream); },
        [](Stream& stream) {
            const std::jthread other([&] { stream.cancel(); });
            EXPECT_FALSE(stream.next());
        },
    };
    for (const auto& leave : ways) {
        Stream stream;
        const auto sink = stream.sink();
        const auto event = std::make_shared<int>(1);
        if (&leave != std::end(ways) - 1) {
            sink.send(event);
        }
        leave(stream);
        sink.send(event);
        EXPECT_EQ(event.use_count(), 1);
        EXPECT_TRUE(sink.stopToken().stop_requested());
    }
}

} // namespace CleanCoreTests
