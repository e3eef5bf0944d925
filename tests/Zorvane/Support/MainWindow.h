#pragma once

#include "Zorvane/State/Models/Models.h"
#include "tests/Zorvane/Support/Gate.h"
#include "tests/Zorvane/Support/ScriptedApplication.h"
#include "tests/Zorvane/Support/Warnings.h"

#include <QImage>
#include <QQmlApplicationEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QSize>
#include <QStringList>
#include <QTranslator>

#include <functional>
#include <memory>

namespace ZorvaneTests {

/// In which language a window shows its texts: in English, or in one that takes two fifths more
/// room, with letters that are higher.
enum class Wording { english, lengthened };

/// The program's window over a scripted application, without anything moving.
///
/// First the application is written down, then the window opened. Work that is held at the gate
/// goes on when the window goes.
class MainWindow
{
public:
    explicit MainWindow(QSize size, Wording wording = Wording::english);
    ~MainWindow();
    MainWindow(const MainWindow&) = delete;
    MainWindow& operator=(const MainWindow&) = delete;

    ScriptedApplication application;
    /// Shared with threads that nobody waits for.
    const std::shared_ptr<Gate> gate = std::make_shared<Gate>();

    /// Shows the window. Rules of the catalog have the texts of the program's own, where those have
    /// any and none is written down.
    Zorvane::AppState& open();
    [[nodiscard]] Zorvane::AppState& state() const { return *m_state; }
    [[nodiscard]] QQuickWindow& window() const { return *m_window; }

    /// Opens the window and scans.
    Zorvane::AppState& openResults();

    /// Every visible item for which `isWanted` holds, in the order of the tree.
    [[nodiscard]] std::vector<QQuickItem*>
    items(const std::function<bool(const QQuickItem&)>& isWanted) const;
    /// The visible control whose accessible name begins so, the topmost of several. Throws when
    /// there is none.
    [[nodiscard]] QQuickItem& control(const QString& name) const;
    /// The first visible item of a QML type. Throws when there is none.
    [[nodiscard]] QQuickItem& itemOfType(const QString& type) const;
    /// Presses a control, also one that is scrolled out of sight, as an assistive tool does.
    void press(const QString& name) const;
    /// Handles what is due, and lays everything out.
    void settle() const;

    /// What the window shows now.
    [[nodiscard]] QImage picture() const;
    /// A colour of picture() at a place in the window, given in its coordinates.
    [[nodiscard]] QColor colorAt(QPointF place) const;

    /// What was written to the log as a warning since this was made.
    [[nodiscard]] QStringList warnings() const { return m_warnings.texts(); }

private:
    const QSize m_size;
    const Wording m_wording;
    Warnings m_warnings;
    std::unique_ptr<QTranslator> m_translator;
    std::unique_ptr<Zorvane::AppState> m_state;
    std::unique_ptr<Zorvane::Models> m_models;
    std::unique_ptr<QQmlApplicationEngine> m_engine;
    QQuickWindow* m_window = nullptr;
};

/// Whether `item` is of the QML type `type`.
[[nodiscard]] bool isOfType(const QQuickItem& item, const QString& type);

} // namespace ZorvaneTests
