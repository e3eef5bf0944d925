#pragma once

#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>
#include <optional>
#include <stop_token>
#include <utility>

namespace CleanCore {

/// The two ends of an unbounded, ordered stream of events: any number of threads write through
/// copies of an EventSink, one reader owns the EventStream.
///
/// No event is dropped because the reader is slow. Dropping or cancelling the reader's end asks the
/// writers to stop and returns at once; nothing more reaches the reader.
template <typename Event>
class EventStream;

/// The writing end. Copyable; safe from any thread. Writing after the end is ignored.
template <typename Event>
class EventSink
{
public:
    void send(Event event) const
    {
        const std::lock_guard lock(m_channel->mutex);
        if (!m_channel->isEnded) {
            m_channel->events.push_back(std::move(event));
            m_channel->changed.notify_all();
        }
    }

    /// Ends the stream; the reader still receives the events written before.
    void finish() const
    {
        const std::lock_guard lock(m_channel->mutex);
        m_channel->isEnded = true;
        m_channel->changed.notify_all();
    }

    /// Asked to stop once the reader has gone or has cancelled.
    [[nodiscard]] std::stop_token stopToken() const { return m_channel->stop.get_token(); }

private:
    friend class EventStream<Event>;
    struct Channel
    {
        std::mutex mutex;
        std::condition_variable changed;
        std::deque<Event> events;
        bool isEnded = false;
        std::stop_source stop;
    };
    explicit EventSink(std::shared_ptr<Channel> channel) : m_channel(std::move(channel)) {}
    std::shared_ptr<Channel> m_channel;
};

template <typename Event>
class EventStream
{
public:
    EventStream() : m_channel(std::make_shared<typename EventSink<Event>::Channel>()) {}
    EventStream(EventStream&&) noexcept = default;
    EventStream& operator=(EventStream&& other) noexcept
    {
        std::swap(m_channel, other.m_channel);
        return *this;
    }
    EventStream(const EventStream&) = delete;
    EventStream& operator=(const EventStream&) = delete;
    ~EventStream() { cancel(); }

    [[nodiscard]] EventSink<Event> sink() const { return EventSink<Event>(m_channel); }

    /// Waits for the next event; nothing once the stream has ended and every event was read.
    [[nodiscard]] std::optional<Event> next()
    {
        std::unique_lock lock(m_channel->mutex);
        m_channel->changed.wait(lock,
                                [&] { return !m_channel->events.empty() || m_channel->isEnded; });
        if (m_channel->events.empty()) {
            return std::nullopt;
        }
        std::optional<Event> event(std::move(m_channel->events.front()));
        m_channel->events.pop_front();
        return event;
    }

    /// Drops the unread events, ends the stream and asks the writers to stop. May be called from
    /// another thread than the reader's, which wakes it.
    void cancel()
    {
        if (!m_channel) {
            return;
        }
        m_channel->stop.request_stop();
        std::deque<Event> unread;
        const std::lock_guard lock(m_channel->mutex);
        m_channel->isEnded = true;
        unread.swap(m_channel->events);
        m_channel->changed.notify_all();
    }

private:
    std::shared_ptr<typename EventSink<Event>::Channel> m_channel;
};

} // namespace CleanCore
