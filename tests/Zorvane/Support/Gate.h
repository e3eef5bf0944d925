#pragma once

#include <atomic>

namespace ZorvaneTests {

/// Holds threads until it is opened.
class Gate
{
public:
    /// Waits for the gate to open.
    void pass()
    {
        m_isReached = true;
        m_isReached.notify_all();
        m_isOpen.wait(false);
    }

    /// Waits until a thread has come to the gate.
    void waitUntilReached() const { m_isReached.wait(false); }

    void open()
    {
        m_isOpen = true;
        m_isOpen.notify_all();
    }

private:
    std::atomic<bool> m_isReached = false;
    std::atomic<bool> m_isOpen = false;
};

} // namespace ZorvaneTests
