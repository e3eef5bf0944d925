#pragma once

#include "Zorvane/State/Models/Models.h"
#include "tests/Zorvane/Support/ScriptedApplication.h"
#include "tests/Zorvane/Support/Stage.h"

#include <QAccessible>

#include <vector>

namespace ZorvaneTests {

/// The sheets of a scripted application over a button that fills the window. What a user can
/// perceive and do is looked up in the tree that assistive tools read.
class SheetStage
{
public:
    explicit SheetStage(Zorvane::AppState& state);

    [[nodiscard]] QQuickWindow& window() const { return m_stage.window(); }
    [[nodiscard]] QQuickItem& below() const;

    /// The names of everything visible but the button below, in order.
    [[nodiscard]] QStringList names() const;
    [[nodiscard]] bool shows(const QString& name) const { return names().contains(name); }
    [[nodiscard]] QStringList checkBoxes() const;
    /// The visible button or check box whose name begins like this.
    [[nodiscard]] QQuickItem& control(const QString& name) const;
    [[nodiscard]] bool hasControl(const QString& name) const;
    /// Of the item with the keyboard.
    [[nodiscard]] QString focusedName() const;

    void press(int key) const;
    /// Clicks the middle of a control.
    void click(const QString& name) const;

private:
    [[nodiscard]] std::vector<QAccessibleInterface*> visible() const;
    [[nodiscard]] QQuickItem* find(const QString& name) const;

    Zorvane::Models m_models;
    Stage m_stage;
};

} // namespace ZorvaneTests
