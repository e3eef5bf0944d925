#pragma once

#include <QObject>
#include <functional>
#include <string>
#include <utility>

namespace ZorvaneTests {

/// The signals of objects in the order in which they were emitted, each as a text.
class SignalLog
{
public:
    template <typename Object, typename Signal>
    void note(Object* object, Signal signal, std::function<std::string()> text)
    {
        QObject::connect(object, signal, &m_context, [this, text = std::move(text)] {
            m_text += (m_text.empty() ? "" : ", ") + text();
        });
    }

    /// What was noted since the last call, separated by ", ".
    [[nodiscard]] std::string take() { return std::exchange(m_text, {}); }

private:
    QObject m_context;
    std::string m_text;
};

} // namespace ZorvaneTests
