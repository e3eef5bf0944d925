#include "tests/Zorvane/Support/MainWindow.h"

#include "tests/Zorvane/Support/LengthenedTexts.h"

#include <QAccessible>
#include <QCoreApplication>
#include <QTest>

#include <stdexcept>

namespace ZorvaneTests {

namespace {

constexpr const char* textKeys[][2] = {
    {"rule.", ".title"}, {"category.explanation.", ""}, {"category.warning.", ""}};

void addTexts(ScriptedApplication& application, Wording wording)
{
    const auto bundled = CleanCore::TextTable::loadBundled("en");
    for (const CleanCore::CleaningRule& rule : application.catalog.rules) {
        for (const auto& [prefix, suffix] : textKeys) {
            const std::string key = prefix + rule.id + suffix;
            std::string text = bundled.textOrEmpty(key);
            if (text.empty()) {
                continue;
            }
            if (wording == Wording::lengthened) {
                text = lengthened(QString::fromStdString(text)).toStdString();
            }
            application.texts.emplace(key, text);
        }
    }
}

void addVisible(QQuickItem& item, const std::function<bool(const QQuickItem&)>& isWanted,
                std::vector<QQuickItem*>& found)
{
    if (!item.isVisible() || item.opacity() == 0) {
        return;
    }
    if (isWanted(item)) {
        found.push_back(&item);
    }
    for (QQuickItem* child : item.childItems()) {
        addVisible(*child, isWanted, found);
    }
}

QString accessibleName(const QQuickItem& item)
{
    QAccessibleInterface* interface =
        QAccessible::queryAccessibleInterface(const_cast<QQuickItem*>(&item));
    return interface == nullptr ? QString() : interface->text(QAccessible::Name);
}

} // namespace

bool isOfType(const QQuickItem& item, const QString& type)
{
    return QString::fromLatin1(item.metaObject()->className())
        .startsWith(type + QLatin1String("_QMLTYPE"));
}

MainWindow::MainWindow(QSize size, Wording wording) : m_size(size), m_wording(wording)
{
    if (wording == Wording::lengthened) {
        m_translator = std::make_unique<LengthenedTexts>();
        QCoreApplication::installTranslator(m_translator.get());
    }
}

MainWindow::~MainWindow()
{
    gate->open();
    m_engine.reset();
    m_models.reset();
    m_state.reset();
    if (m_translator) {
        QCoreApplication::removeTranslator(m_translator.get());
    }
}

Zorvane::AppState& MainWindow::open()
{
    addTexts(application, m_wording);
    m_state = std::make_unique<Zorvane::AppState>(application.environment());
    m_models = std::make_unique<Zorvane::Models>(state());
    // As the program does.
    QQuickWindow::setTextRenderType(QQuickWindow::NativeTextRendering);
    m_engine = std::make_unique<QQmlApplicationEngine>();
    m_engine->addImportPath(QStringLiteral("qrc:/"));
    m_engine->setInitialProperties({{QStringLiteral("appState"), QVariant::fromValue(&state())},
                                    {QStringLiteral("models"), QVariant::fromValue(m_models.get())},
                                    {QStringLiteral("animated"), false},
                                    {QStringLiteral("width"), m_size.width()},
                                    {QStringLiteral("height"), m_size.height()}});
    m_engine->load(QUrl(QStringLiteral("qrc:/Zorvane/Shell/Main.qml")));
    if (m_engine->rootObjects().isEmpty()) {
        throw std::runtime_error("the window does not load: " +
                                 warnings().join(u'\n').toStdString());
    }
    m_window = qobject_cast<QQuickWindow*>(m_engine->rootObjects().constFirst());
    if (!QTest::qWaitForWindowExposed(m_window)) {
        throw std::runtime_error("the window is not shown");
    }
    settle();
    return state();
}

Zorvane::AppState& MainWindow::openResults()
{
    open();
    state().continueWithoutPermission();
    scan(state());
    settle();
    return state();
}

std::vector<QQuickItem*>
MainWindow::items(const std::function<bool(const QQuickItem&)>& isWanted) const
{
    std::vector<QQuickItem*> found;
    addVisible(*m_window->contentItem(), isWanted, found);
    return found;
}

QQuickItem& MainWindow::control(const QString& name) const
{
    const auto found = items([&](const QQuickItem& item) {
        const QMetaObject* type = item.metaObject();
        return (type->indexOfSignal("clicked()") >= 0 || type->indexOfSignal("triggered()") >= 0 ||
                type->indexOfSignal("toggled()") >= 0) &&
               accessibleName(item).startsWith(name);
    });
    if (found.empty()) {
        throw std::runtime_error("no control " + name.toStdString());
    }
    return *found.back();
}

QQuickItem& MainWindow::itemOfType(const QString& type) const
{
    const auto found = items([&](const QQuickItem& item) { return isOfType(item, type); });
    if (found.empty()) {
        throw std::runtime_error("no " + type.toStdString());
    }
    return *found.front();
}

void MainWindow::press(const QString& name) const
{
    QAccessibleInterface* interface = QAccessible::queryAccessibleInterface(&control(name));
    interface->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    settle();
}

void MainWindow::settle() const
{
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    static_cast<void>(m_window->grabWindow());
    QCoreApplication::processEvents();
}

QImage MainWindow::picture() const
{
    return m_window->grabWindow().convertToFormat(QImage::Format_RGB32);
}

QColor MainWindow::colorAt(QPointF place) const
{
    return picture().pixelColor((place * m_window->effectiveDevicePixelRatio()).toPoint());
}

} // namespace ZorvaneTests
