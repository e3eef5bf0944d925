#pragma once

#include <atomic>
#include <memory>

namespace ZorvaneTests {

/// Holds threads until it is opened. A copy is the same gate: threads that nobody waits for keep
/// one.
class Gate
{
public:
    /// Waits for the gate to open.
    void pass() const
    {
        State isFirst = State::closed;
        m_state->compare_exchange_strong(isFirst, State::reached);
        m_state->notify_all();
        m_state->wait(State::reached);
    }

    /// Waits until a thread has come to the gate.
    void waitUntilReached() const { m_state->wait(State::closed); }

    void open() const
    {
        *m_state = State::open;
        m_state->notify_all();
    }

private:
    enum class State { closed, reached, open };
    std::shared_ptr<std::atomic<State>> m_state =
        std::make_shared<std::atomic<State>>(State::closed);
};

} // namespace ZorvaneTests
