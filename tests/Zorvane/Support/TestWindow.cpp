#include "tests/Zorvane/Support/TestWindow.h"

#include <QTest>

#include <stdexcept>

namespace ZorvaneTests {

namespace {

/// `text` as in a language that takes two fifths more room.
std::string lengthened(const std::string& text)
{
    // A short text gets a longer last word, a long one further words.
    const std::size_t missing = (2 * text.size() + 4) / 5;
    std::string more;
    while (more.size() < missing) {
        more += " ueberpruefungsgenehmigungsverfahren";
    }
    return text + more.substr(missing > 4 ? 0 : 1, missing);
}

class LengthenedTexts : public QTranslator
{
    [[nodiscard]] bool isEmpty() const override { return false; }
    [[nodiscard]] QString translate(const char* /*context*/, const char* text,
                                    const char* /*disambiguation*/, int /*n*/) const override
    {
        return QString::fromStdString(lengthened(text));
    }
};

void addBundledTexts(ScriptedApplication& application, Wording wording)
{
    const auto bundled = CleanCore::TextTable::loadBundled("en");
    for (const CleanCore::CleaningRule& rule : application.catalog.rules) {
        for (const std::string& key :
             {"rule." + rule.id + ".title", "category.explanation." + rule.id,
              "category.warning." + rule.id}) {
            const std::string text = bundled.textOrEmpty(key);
            if (!text.empty()) {
                application.texts.emplace(key,
                                          wording == Wording::english ? text : lengthened(text));
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

QQuickItem& topmost(const std::vector<QQuickItem*>& found, const std::string& name)
{
    if (found.empty()) {
        throw std::runtime_error("no " + name);
    }
    return *found.back();
}

} // namespace

bool isIn(const QQuickItem* item, const Strings& qmlTypes)
{
    while (
        item != nullptr && std::ranges::none_of(qmlTypes, [&](const std::string& type) {
            return std::string_view(item->metaObject()->className()).starts_with(type + "_QMLTYPE");
        })) {
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

std::vector<QQuickItem*> TestWindow::items(const Predicate& isWanted) const
{
    std::vector<QQuickItem*> found;
    addVisible(*m_window->contentItem(), found);
    std::erase_if(found, [&](const QQuickItem* item) { return !isWanted(*item); });
    return found;
}

std::vector<QQuickItem*> TestWindow::itemsOfClass(const char* cppClass) const
{
    return items([&](const QQuickItem& item) { return item.inherits(cppClass); });
}

QQuickItem& TestWindow::item(const std::string& qmlType) const
{
    // The outermost one: the items in it are not of its type.
    return topmost(items([&](const QQuickItem& item) {
                       return isIn(&item, {qmlType}) && !isIn(item.parentItem(), {qmlType});
                   }),
                   qmlType);
}

QQuickItem& TestWindow::control(const std::string& name) const
{
    return topmost(
        items([&](const QQuickItem& item) {
            return item.inherits("QQuickAbstractButton") &&
                   accessible(item).text(QAccessible::Name).toStdString().starts_with(name);
        }),
        name);
}

std::string TestWindow::focused() const
{
    const QQuickItem* const item = m_window->activeFocusItem();
    return item == nullptr ? "" : accessible(*item).text(QAccessible::Name).toStdString();
}

void TestWindow::click(const std::string& name) const
{
    const QQuickItem& item = control(name);
    QTest::mouseClick(m_window, Qt::LeftButton, {},
                      item.mapToScene({item.width() / 2, item.height() / 2}).toPoint());
    settle();
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

MainWindow::MainWindow(QSize size, Wording wording) : m_size(size), m_wording(wording)
{
    if (wording == Wording::lengthened) {
        m_translator = std::make_unique<LengthenedTexts>();
        QCoreApplication::installTranslator(m_translator.get());
    }
}

Zorvane::AppState& MainWindow::open()
{
    addBundledTexts(application, m_wording);
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
