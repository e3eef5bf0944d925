#include "tests/Zorvane/Support/SheetStage.h"

#include <QTest>

#include <stdexcept>

namespace ZorvaneTests {

namespace {

void collectVisible(QAccessibleInterface* element, std::vector<QAccessibleInterface*>& elements)
{
    for (int index = 0; index < element->childCount(); ++index) {
        QAccessibleInterface* const child = element->child(index);
        if (!child->state().invisible) {
            elements.push_back(child);
            collectVisible(child, elements);
        }
    }
}

QString nameOf(QAccessibleInterface* element)
{
    return element->text(QAccessible::Name);
}

} // namespace

SheetStage::SheetStage(Zorvane::AppState& state)
    : m_models(state),
      m_stage(QStringLiteral("required property AppState application\n"
                             "required property Models models\n"
                             "SecondaryButton { objectName: \"below\"; text: \"Below\"\n"
                             "anchors.fill: parent; enabled: !sheets.sheet }\n"
                             "SheetHost { id: sheets; anchors.fill: parent; appState: application\n"
                             "models: models }"),
              QSize(900, 640),
              {{QStringLiteral("application"), QVariant::fromValue(&state)},
               {QStringLiteral("models"), QVariant::fromValue(&m_models)}})
{
    below().forceActiveFocus(Qt::TabFocusReason);
}

QQuickItem& SheetStage::below() const
{
    return m_stage.item(QStringLiteral("below"));
}

std::vector<QAccessibleInterface*> SheetStage::visible() const
{
    std::vector<QAccessibleInterface*> elements;
    collectVisible(QAccessible::queryAccessibleInterface(&window()), elements);
    std::erase_if(elements, [&](auto* element) { return element->object() == &below(); });
    return elements;
}

QStringList SheetStage::names() const
{
    QStringList names;
    for (QAccessibleInterface* element : visible()) {
        names << nameOf(element);
    }
    return names;
}

QStringList SheetStage::checkBoxes() const
{
    QStringList names;
    for (QAccessibleInterface* element : visible()) {
        if (element->role() == QAccessible::CheckBox) {
            names << nameOf(element);
        }
    }
    return names;
}

QQuickItem* SheetStage::find(const QString& name) const
{
    for (QAccessibleInterface* element : visible()) {
        const bool isControl =
            element->role() == QAccessible::Button || element->role() == QAccessible::CheckBox;
        if (isControl && nameOf(element).startsWith(name)) {
            return qobject_cast<QQuickItem*>(element->object());
        }
    }
    return nullptr;
}

QQuickItem& SheetStage::control(const QString& name) const
{
    QQuickItem* const item = find(name);
    if (item == nullptr) {
        throw std::runtime_error("no control " + name.toStdString());
    }
    return *item;
}

bool SheetStage::hasControl(const QString& name) const
{
    return find(name) != nullptr;
}

QString SheetStage::focusedName() const
{
    QAccessibleInterface* const element =
        QAccessible::queryAccessibleInterface(window().activeFocusItem());
    return element == nullptr ? QString() : nameOf(element);
}

void SheetStage::press(int key) const
{
    QTest::keyClick(&window(), static_cast<Qt::Key>(key));
}

void SheetStage::click(const QString& name) const
{
    // Lays out what has changed.
    (void)m_stage.picture();
    const QQuickItem& item = control(name);
    const QPointF middle = item.mapToScene(QPointF(item.width() / 2, item.height() / 2));
    QTest::mouseClick(&window(), Qt::LeftButton, {}, middle.toPoint());
}

} // namespace ZorvaneTests
