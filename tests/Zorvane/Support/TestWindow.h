#pragma once

#include "Zorvane/State/Models/Models.h"
#include "tests/Zorvane/Support/ScriptedApplication.h"

#include <QAccessible>
#include <QImage>
#include <QQmlApplicationEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTranslator>

namespace ZorvaneTests {

/// Whether it, or an item around it, is of this QML type.
[[nodiscard]] bool isIn(const QQuickItem* item, const std::string& qmlType);
[[nodiscard]] QAccessibleInterface& accessible(const QQuickItem& item);
void act(const QQuickItem& item, const QString& action = QAccessibleActionInterface::pressAction());

/// A window without animations. Only visible items are found in it; a missing one is an exception.
class TestWindow
{
public:
    using Predicate = std::function<bool(const QQuickItem&)>;

    TestWindow() = default;
    TestWindow(const TestWindow&) = delete;
    TestWindow& operator=(const TestWindow&) = delete;

    [[nodiscard]] QQuickWindow& window() const { return *m_window; }
    [[nodiscard]] std::vector<QQuickItem*> items(const char* cppClass) const;
    /// The topmost of them that is wanted.
    [[nodiscard]] QQuickItem& find(const char* cppClass, const Predicate& isWanted) const;
    [[nodiscard]] QQuickItem& item(const std::string& qmlType) const;
    /// By the beginning of its accessible name.
    [[nodiscard]] QQuickItem& control(const std::string& name) const;
    /// The accessible name of the item with the keyboard focus.
    [[nodiscard]] std::string focused() const;
    [[nodiscard]] bool hasFocusIn(const std::string& qmlType) const
    {
        return isIn(m_window->activeFocusItem(), qmlType);
    }

    /// As an assistive tool does, also out of sight.
    void press(const std::string& name) const { act(control(name)), settle(); }
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
    ~MainWindow() { application.gate.open(), close(); }

    ScriptedApplication application;

    /// Areas of the bundled catalog get their bundled texts.
    Zorvane::AppState& open();
    [[nodiscard]] Zorvane::AppState& state() const { return *m_state; }

private:
    const QSize m_size;
    std::unique_ptr<QTranslator> m_translator;
    std::unique_ptr<Zorvane::AppState> m_state;
    std::unique_ptr<Zorvane::Models> m_models;
};

/// The screens and sheets in their states: "SCREEN STATE".
[[nodiscard]] Strings allScenes();
/// Plays statements: what a person or the program does, and before the window opens also those that
/// set up its application. Throws for an unknown verb.
void play(MainWindow& window, const std::string& steps);
/// Plays what leads to a scene.
void show(MainWindow& window, const std::string& scene);

} // namespace ZorvaneTests
