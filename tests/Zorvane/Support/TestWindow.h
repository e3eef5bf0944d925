#pragma once

#include "Zorvane/State/Models/Models.h"
#include "tests/Zorvane/Support/Gate.h"
#include "tests/Zorvane/Support/ScriptedApplication.h"

#include <QAccessible>
#include <QImage>
#include <QQmlApplicationEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTranslator>

#include <functional>
#include <memory>
#include <vector>

namespace ZorvaneTests {

/// Whether it, or an item around it, is of one of these QML types.
[[nodiscard]] bool isIn(const QQuickItem* item, const Strings& qmlTypes);
[[nodiscard]] QAccessibleInterface& accessible(const QQuickItem& item);
void act(const QQuickItem& item, const QString& action = QAccessibleActionInterface::pressAction());

/// A window without animations. Only visible items are found in it; a missing one is an exception.
class TestWindow
{
public:
    TestWindow() = default;
    TestWindow(const TestWindow&) = delete;
    TestWindow& operator=(const TestWindow&) = delete;

    [[nodiscard]] QQuickWindow& window() const { return *m_window; }
    [[nodiscard]] std::vector<QQuickItem*> itemsOfClass(const char* cppClass) const;
    [[nodiscard]] QQuickItem& item(const std::string& qmlType) const;
    /// By the beginning of its accessible name; the topmost of several.
    [[nodiscard]] QQuickItem& control(const std::string& name) const;
    /// The accessible name of the item with the keyboard focus.
    [[nodiscard]] std::string focused() const;
    [[nodiscard]] bool hasFocusIn(const std::string& qmlType) const
    {
        return isIn(m_window->activeFocusItem(), {qmlType});
    }

    /// As an assistive tool does, also out of sight.
    void press(const std::string& name) const { act(control(name)), settle(); }
    void click(const std::string& name) const;
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) const;
    /// Makes it the window that has the keyboard, and gives it to this control by the Tab key.
    void activate(const std::string& name = {}) const;
    /// Handles pending events and lays everything out, if the window exists.
    void settle() const;

    [[nodiscard]] QImage picture() const { return m_window->grabWindow(); }

protected:
    ~TestWindow() = default;
    void show(const std::function<void(QQmlApplicationEngine&)>& load);
    void close() { m_engine.reset(); }

private:
    using Predicate = std::function<bool(const QQuickItem&)>;
    [[nodiscard]] std::vector<QQuickItem*> items(const Predicate& isWanted) const;

    std::unique_ptr<QQmlApplicationEngine> m_engine;
    QQuickWindow* m_window = nullptr;
};

/// Shows pieces of QML on black.
class Stage : public TestWindow
{
public:
    explicit Stage(const QString& content);
};

enum class Wording { english, lengthened };

/// The window of the program over a scripted application, which is set up before it is opened.
class MainWindow : public TestWindow
{
public:
    explicit MainWindow(QSize size = QSize(1080, 760), Wording wording = Wording::english);
    ~MainWindow() { gate->open(), close(); }

    ScriptedApplication application;
    /// For work to be held at; opened in the end.
    const std::shared_ptr<Gate> gate = std::make_shared<Gate>();

    /// Areas of the bundled catalog get their bundled texts.
    Zorvane::AppState& open();
    [[nodiscard]] Zorvane::AppState& state() const { return *m_state; }

private:
    const QSize m_size;
    const Wording m_wording;
    std::unique_ptr<QTranslator> m_translator;
    std::unique_ptr<Zorvane::AppState> m_state;
    std::unique_ptr<Zorvane::Models> m_models;
};

} // namespace ZorvaneTests
