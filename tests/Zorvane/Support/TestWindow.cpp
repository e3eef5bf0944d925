#include "tests/Zorvane/Support/TestWindow.h"

#include <QTest>

#include <stdexcept>

namespace ZorvaneTests {

namespace {

/// Texts as in a language that takes two fifths more room.
class LengthenedTexts : public QTranslator
{
    [[nodiscard]] bool isEmpty() const override { return false; }
    [[nodiscard]] QString translate(const char* /*context*/, const char* text,
                                    const char* /*disambiguation*/, int /*n*/) const override
    {
        // A short text gets a longer last word, a long one further words.
        const QString more = QStringLiteral(" ueberpruefungsgenehmigungsverfahren");
        const QString whole = QString::fromUtf8(text);
        const auto missing = (2 * whole.size() + 4) / 5;
        return whole + more.repeated(missing / more.size() + 1).mid(missing > 4 ? 0 : 1, missing);
    }
};

void addBundledTexts(ScriptedApplication& application)
{
    const auto bundled = CleanCore::TextTable::loadBundled("en");
    for (const CleanCore::CleaningRule& rule : application.catalog.rules) {
        for (const std::string& key :
             {"rule." + rule.id + ".title", "category.explanation." + rule.id,
              "category.warning." + rule.id}) {
            if (const std::string text = bundled.textOrEmpty(key); !text.empty()) {
                application.texts.emplace(key, text);
            }
        }
    }
}

void addVisible(QQuickItem& item, std::vector<QQuickItem*>& found)
{
    if (item.isVisible() && item.opacity() > 0) {
        found.push_back(&item);
        for (QQuickItem* child : item.childItems()) {
            addVisible(*child, found);
        }
    }
}

} // namespace

bool isIn(const QQuickItem* item, const std::string& qmlType)
{
    const std::string name = qmlType + "_QMLTYPE";
    while (item != nullptr && !QByteArrayView(item->metaObject()->className()).startsWith(name)) {
        item = item->parentItem();
    }
    return item != nullptr;
}

QAccessibleInterface& accessible(const QQuickItem& item)
{
    return *QAccessible::queryAccessibleInterface(const_cast<QQuickItem*>(&item));
}

void act(const QQuickItem& item, const QString& action)
{
    accessible(item).actionInterface()->doAction(action);
}

std::vector<QQuickItem*> TestWindow::items(const char* cppClass) const
{
    std::vector<QQuickItem*> found;
    addVisible(*m_window->contentItem(), found);
    std::erase_if(found, [&](const QQuickItem* item) { return !item->inherits(cppClass); });
    return found;
}

QQuickItem& TestWindow::find(const char* cppClass, const Predicate& isWanted) const
{
    auto found = items(cppClass);
    std::erase_if(found, [&](const QQuickItem* item) { return !isWanted(*item); });
    if (found.empty()) {
        throw std::runtime_error(std::string("not found: ") + cppClass);
    }
    return *found.back();
}

QQuickItem& TestWindow::item(const std::string& qmlType) const
{
    // The outermost one: the items in it are not of its type.
    return find("QQuickItem", [&](const QQuickItem& item) {
        return isIn(&item, qmlType) && !isIn(item.parentItem(), qmlType);
    });
}

QQuickItem& TestWindow::control(const std::string& name) const
{
    return find("QQuickAbstractButton", [&](const QQuickItem& item) {
        return accessible(item).text(QAccessible::Name).toStdString().starts_with(name);
    });
}

std::string TestWindow::focused() const
{
    const QQuickItem* const item = m_window->activeFocusItem();
    return item == nullptr ? "" : accessible(*item).text(QAccessible::Name).toStdString();
}

void TestWindow::key(Qt::Key key, Qt::KeyboardModifiers modifiers) const
{
    QTest::keyClick(m_window, key, modifiers);
    settle();
}

void TestWindow::activate(const std::string& name) const
{
    m_window->requestActivate();
    if (!QTest::qWaitForWindowActive(m_window)) {
        throw std::runtime_error("the window does not become active");
    }
    if (!name.empty()) {
        // An item that has the focus would not learn that the Tab key brought it.
        control(name).setFocus(false);
        control(name).forceActiveFocus(Qt::TabFocusReason);
    }
}

void TestWindow::settle() const
{
    if (m_window != nullptr) {
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        static_cast<void>(m_window->grabWindow());
        QCoreApplication::processEvents();
    }
}

void TestWindow::show(const std::function<void(QQmlApplicationEngine&)>& load)
{
    // As the program does.
    QQuickWindow::setTextRenderType(QQuickWindow::NativeTextRendering);
    m_engine = std::make_unique<QQmlApplicationEngine>();
    m_engine->addImportPath(QStringLiteral("qrc:/"));
    load(*m_engine);
    if (m_engine->rootObjects().isEmpty()) {
        throw std::runtime_error("no window");
    }
    m_window = qobject_cast<QQuickWindow*>(m_engine->rootObjects().constFirst());
    if (!QTest::qWaitForWindowExposed(m_window)) {
        throw std::runtime_error("the window is not shown");
    }
    settle();
}

Stage::Stage(const QString& content)
{
    show([&](QQmlApplicationEngine& engine) {
        engine.loadData(QStringLiteral("import QtQuick\nimport Zorvane\nWindow { visible: true\n"
                                       "width: 400; height: 300; color: \"black\"\n"
                                       "Component.onCompleted: Theme.animated = false\n%1\n}")
                            .arg(content)
                            .toUtf8());
    });
}

MainWindow::MainWindow(QSize size, Wording wording) : m_size(size)
{
    if (wording == Wording::lengthened) {
        m_translator = std::make_unique<LengthenedTexts>();
        QCoreApplication::installTranslator(m_translator.get());
    }
}

Zorvane::AppState& MainWindow::open()
{
    addBundledTexts(application);
    m_state = std::make_unique<Zorvane::AppState>(application.environment());
    m_models = std::make_unique<Zorvane::Models>(state());
    show([&](QQmlApplicationEngine& engine) {
        engine.setInitialProperties(
            {{QStringLiteral("appState"), QVariant::fromValue(&state())},
             {QStringLiteral("models"), QVariant::fromValue(m_models.get())},
             {QStringLiteral("animated"), false},
             {QStringLiteral("width"), m_size.width()},
             {QStringLiteral("height"), m_size.height()}});
        engine.load(QUrl(QStringLiteral("qrc:/Zorvane/Shell/Main.qml")));
    });
    return state();
}

} // namespace ZorvaneTests
