#include "tests/Zorvane/Support/TestWindow.h"

#include <QTest>

#include <mutex>
#include <stdexcept>
#include <utility>

namespace ZorvaneTests {

namespace {

// A message handler is a plain function.
std::mutex warningsMutex;
QStringList collectedWarnings;

void collect(QtMsgType type, const QMessageLogContext& context, const QString& text)
{
    // The platform plugin mentions its own limits.
    const bool isOfPlatform = QLatin1String(context.category).startsWith(QLatin1String("qt.qpa")) ||
                              text.startsWith(QStringLiteral("This plugin does not support"));
    if (type != QtDebugMsg && type != QtInfoMsg && !isOfPlatform) {
        const std::lock_guard lock(warningsMutex);
        collectedWarnings << text;
    }
}

/// `text` as in a language that takes two fifths more room and has dots on its vowels. Markup and
/// placeholders stay.
QString lengthened(const QString& text)
{
    static const QString plain = QStringLiteral("aouAOU");
    static const QString dotted = QStringLiteral("äöüÄÖÜ");
    static const QString filler = QStringLiteral("überprüfungsgenehmigungsverfahren");
    QString result;
    bool isMarkup = false;
    for (const QChar letter : text) {
        isMarkup = letter == u'<' || (isMarkup && letter != u'>');
        const qsizetype vowel = isMarkup ? -1 : plain.indexOf(letter);
        result += vowel < 0 ? letter : dotted[vowel];
    }
    for (qsizetype missing = (2 * text.size() + 4) / 5; missing > 0; missing -= filler.size() + 1) {
        // A short text gets a longer last word, a long one further words.
        result += (missing > 4 ? QStringLiteral(" ") : QString()) + filler.left(missing);
    }
    return result;
}

class LengthenedTexts : public QTranslator
{
    [[nodiscard]] bool isEmpty() const override { return false; }
    [[nodiscard]] QString translate(const char* /*context*/, const char* text,
                                    const char* /*disambiguation*/, int /*n*/) const override
    {
        return lengthened(QString::fromUtf8(text));
    }
};

void addBundledTexts(ScriptedApplication& application, Wording wording)
{
    constexpr const char* keys[][2] = {
        {"rule.", ".title"}, {"category.explanation.", ""}, {"category.warning.", ""}};
    const auto bundled = CleanCore::TextTable::loadBundled("en");
    for (const CleanCore::CleaningRule& rule : application.catalog.rules) {
        for (const auto& [prefix, suffix] : keys) {
            const std::string key = prefix + rule.id + suffix;
            const QString text = QString::fromStdString(bundled.textOrEmpty(key));
            if (!text.isEmpty()) {
                const bool isEnglish = wording == Wording::english;
                application.texts.emplace(key, (isEnglish ? text : lengthened(text)).toStdString());
            }
        }
    }
}

void addVisible(QQuickItem& item, const TestWindow::Predicate& isWanted,
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

QQuickItem& existing(const std::vector<QQuickItem*>& found, const QString& name)
{
    if (found.empty()) {
        throw std::runtime_error("no " + name.toStdString());
    }
    return *found.back();
}

} // namespace

void collectWarnings()
{
    qInstallMessageHandler(collect);
}

QStringList takeWarnings()
{
    const std::lock_guard lock(warningsMutex);
    return std::exchange(collectedWarnings, {});
}

bool isOfType(const QQuickItem& item, const QString& qmlType)
{
    return QString::fromLatin1(item.metaObject()->className())
        .startsWith(qmlType + QLatin1String("_QMLTYPE"));
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
    addVisible(*m_window->contentItem(), isWanted, found);
    return found;
}

QQuickItem& TestWindow::item(const QString& qmlType) const
{
    return existing(items([&](const QQuickItem& item) { return isOfType(item, qmlType); }),
                    qmlType);
}

std::vector<QQuickItem*> TestWindow::controls(const QString& name) const
{
    return items([&](const QQuickItem& item) {
        const QMetaObject* type = item.metaObject();
        return (type->indexOfSignal("clicked()") >= 0 || type->indexOfSignal("triggered()") >= 0) &&
               accessible(item).text(QAccessible::Name).startsWith(name);
    });
}

QQuickItem& TestWindow::control(const QString& name) const
{
    return existing(controls(name), name);
}

bool TestWindow::has(const QString& name) const
{
    return !controls(name).empty();
}

QStringList TestWindow::texts() const
{
    QStringList texts;
    for (const QQuickItem* item :
         items([](const QQuickItem& each) { return each.inherits("QQuickText"); })) {
        texts << item->property("text").toString();
    }
    return texts;
}

QString TestWindow::focused() const
{
    const QQuickItem* const item = m_window->activeFocusItem();
    return item == nullptr ? QString() : accessible(*item).text(QAccessible::Name);
}

bool TestWindow::hasFocusIn(const QString& qmlType) const
{
    const QQuickItem* item = m_window->activeFocusItem();
    while (item != nullptr && !isOfType(*item, qmlType)) {
        item = item->parentItem();
    }
    return item != nullptr;
}

void TestWindow::press(const QString& name) const
{
    act(control(name));
    settle();
}

void TestWindow::click(const QString& name) const
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

void TestWindow::activate() const
{
    m_window->requestActivate();
    if (!QTest::qWaitForWindowActive(m_window)) {
        throw std::runtime_error("the window does not become active");
    }
}

void TestWindow::settle() const
{
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    static_cast<void>(m_window->grabWindow());
    QCoreApplication::processEvents();
}

QImage TestWindow::picture() const
{
    return m_window->grabWindow().convertToFormat(QImage::Format_RGB32);
}

QColor TestWindow::colorAt(QPointF place) const
{
    return picture().pixelColor((place * m_window->effectiveDevicePixelRatio()).toPoint());
}

void TestWindow::show(const std::function<void(QQmlApplicationEngine&)>& load)
{
    // As the program does.
    QQuickWindow::setTextRenderType(QQuickWindow::NativeTextRendering);
    m_engine = std::make_unique<QQmlApplicationEngine>();
    m_engine->addImportPath(QStringLiteral("qrc:/"));
    load(*m_engine);
    if (m_engine->rootObjects().isEmpty()) {
        throw std::runtime_error("no window: " + takeWarnings().join(u'\n').toStdString());
    }
    m_window = qobject_cast<QQuickWindow*>(m_engine->rootObjects().constFirst());
    if (!QTest::qWaitForWindowExposed(m_window)) {
        throw std::runtime_error("the window is not shown");
    }
    settle();
}

Stage::Stage(const QString& content, QSize size)
{
    show([&](QQmlApplicationEngine& engine) {
        engine.loadData(QStringLiteral("import QtQuick\nimport Zorvane\nWindow { visible: true\n"
                                       "width: %1; height: %2; color: \"black\"\n"
                                       "Component.onCompleted: Theme.animated = false\n%3\n}")
                            .arg(size.width())
                            .arg(size.height())
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

MainWindow::~MainWindow()
{
    gate->open();
    close();
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
