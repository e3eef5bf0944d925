// Times the window's frames over results of 100,000 items an area, in milliseconds: from a press on
// an area's header until its items are drawn, and from frame to frame while the list moves.
//
// usage: window-figures     (QT_QPA_PLATFORM and QT_QUICK_BACKEND choose how it draws)

#include "Zorvane/State/AppState.h"
#include "Zorvane/State/Models/Models.h"
#include "benchmarks/LargeResults.h"

#include <QEventLoop>
#include <QGuiApplication>
#include <QQmlApplicationEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QtQml/QQmlExtensionPlugin>
#include <algorithm>
#include <chrono>
#include <functional>
#include <iostream>
#include <stdexcept>
#include <vector>

Q_IMPORT_QML_PLUGIN(ZorvanePlugin)

namespace {

using Clock = std::chrono::steady_clock;

constexpr int openings = 21;
constexpr int frames = 600;
/// As fast as a wheel that is turned quickly.
constexpr double pixelsPerFrame = 60;

/// Makes a change and waits until the window has drawn it; how long that took.
double timeFrame(QQuickWindow& window, const std::function<void()>& change)
{
    QEventLoop loop;
    QObject::connect(&window, &QQuickWindow::frameSwapped, &loop, &QEventLoop::quit,
                     Qt::QueuedConnection);
    const auto start = Clock::now();
    change();
    window.update();
    loop.exec();
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

void print(const char* what, std::vector<double> times)
{
    std::ranges::sort(times);
    std::cout << what << ": median " << times[times.size() / 2] << ", 99 of 100 within "
              << times[times.size() * 99 / 100] << ", largest " << times.back() << '\n';
}

QQuickItem* list(const QQuickItem& root)
{
    for (QQuickItem* item : root.childItems()) {
        QQuickItem* const found = item->inherits("QQuickListView") ? item : list(*item);
        if (found != nullptr) {
            return found;
        }
    }
    return nullptr;
}

void run()
{
    Zorvane::AppState state(LargeResults::environment());
    Zorvane::Models models(state);
    QQmlApplicationEngine engine;
    engine.addImportPath(QStringLiteral("qrc:/"));
    engine.setInitialProperties({{QStringLiteral("appState"), QVariant::fromValue(&state)},
                                 {QStringLiteral("models"), QVariant::fromValue(&models)},
                                 {QStringLiteral("animated"), true}});
    engine.load(QUrl(QStringLiteral("qrc:/Zorvane/Shell/Main.qml")));
    if (engine.rootObjects().isEmpty()) {
        throw std::runtime_error("the window does not load");
    }
    auto& window = *qobject_cast<QQuickWindow*>(engine.rootObjects().constFirst());
    state.acceptTerms();
    state.continueWithoutPermission();
    state.startScan();
    while (state.phase() != Zorvane::Phase::results) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    timeFrame(window, [] {});

    QQuickItem* const found = list(*window.contentItem());
    if (found == nullptr) {
        throw std::runtime_error("the window shows no list");
    }
    QQuickItem& results = *found;
    QObject* const model = results.property("model").value<QObject*>();
    const auto toggle = [&] { QMetaObject::invokeMethod(model, "toggleExpanded", Q_ARG(int, 0)); };
    std::vector<double> times;
    for (int opening = 0; opening < openings; ++opening) {
        times.push_back(timeFrame(window, toggle));
        timeFrame(window, toggle);
    }
    print("open an area until it is drawn", times);

    toggle();
    times.clear();
    for (int frame = 1; frame <= frames; ++frame) {
        times.push_back(timeFrame(window, [&] {
            results.setProperty("contentY",
                                results.property("originY").toDouble() + frame * pixelsPerFrame);
        }));
    }
    print("from frame to frame while it scrolls", times);
    times.clear();
    const double height = results.property("contentHeight").toDouble() - results.height();
    for (int frame = 1; frame <= frames; ++frame) {
        times.push_back(timeFrame(window, [&] {
            results.setProperty("contentY",
                                results.property("originY").toDouble() + height * frame / frames);
        }));
    }
    print("from frame to frame while its bar is dragged to the end", times);
}

} // namespace

int main(int argc, char** argv)
{
    const QGuiApplication application(argc, argv);
    QQuickWindow::setTextRenderType(QQuickWindow::NativeTextRendering);
    try {
        run();
    } catch (const std::exception& error) {
        std::cerr << "window-figures: " << error.what() << '\n';
        return EXIT_FAILURE;
    }
}
