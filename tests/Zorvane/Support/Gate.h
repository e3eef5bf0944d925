#pragma once

#include <atomic>
#include <memory>

namespace ZorvaneTests {

/// Holds threads until it is opened. A thread in it may outlive the gate: a cancelled scan is not
/// waited for.
class Gate
{
public:
    /// Waits for the gate to open.
    void pass()
    {
        const std::shared_ptr<State> state = m_state;
        state->isReached = true;
        state->isReached.notify_all();
        state->isOpen.wait(false);
    }

    /// Waits until a thread has come to the gate.
    void waitUntilReached() const { m_state->isReached.wait(false); }

    void open()
    {
        m_state->isOpen = true;
        m_state->isOpen.notify_all();
    }

private:
    struct State
    {
        std::atomic<bool> isReached = false;
        std::atomic<bool> isOpen = false;
    };
    std::shared_ptr<State> m_state = std::make_shared<State>();
};

} // namespace ZorvaneTests
