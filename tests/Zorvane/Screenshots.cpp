// Takes pictures of the window in all its states.
#include "tests/Zorvane/Scenes/Scene.h"

#include <QCommandLineParser>
#include <QDir>
#include <QGuiApplication>
#include <QtQml/QQmlExtensionPlugin>

#include <cstdlib>
#include <iostream>

Q_IMPORT_QML_PLUGIN(ZorvanePlugin)

namespace {

using ZorvaneTests::Scene;
using ZorvaneTests::Wording;

/// Whether the picture was written without a warning.
bool take(const Scene& scene, QSize size, Wording wording, const QDir& folder)
{
    ZorvaneTests::MainWindow window(size, wording);
    ZorvaneTests::play(window, scene.steps);
    const QString name =
        QStringLiteral("%1%2-%3x%4-%5-%6.png")
            .arg(QString::fromStdString(scene.name).replace(u' ', u'-'),
                 wording == Wording::lengthened ? QStringLiteral("-long-texts") : QString())
            .arg(size.width())
            .arg(size.height())
            .arg(window.window().effectiveDevicePixelRatio())
            .arg(QQuickWindow::sceneGraphBackend() == QStringLiteral("software")
                     ? QStringLiteral("software")
                     : QStringLiteral("opengl"));
    QStringList problems = ZorvaneTests::takeWarnings();
    if (!window.picture().save(folder.filePath(name))) {
        problems << QStringLiteral("cannot be written");
    }
    for (const QString& problem : problems) {
        std::cerr << "screenshots: " << qPrintable(name) << ": " << qPrintable(problem) << '\n';
    }
    return problems.isEmpty();
}

std::vector<QSize> sizesFor(const Scene& scene, Wording wording)
{
    const QSize smallest = ZorvaneTests::smallestWindow(scene);
    const QSize ordinary(1080, 760);
    const bool isScaled = qEnvironmentVariableIsSet("QT_SCALE_FACTOR");
    if (wording == Wording::lengthened) {
        return {smallest};
    }
    if (!scene.isRepresentative) {
        return isScaled ? std::vector<QSize>() : std::vector{ordinary};
    }
    return isScaled ? std::vector{ordinary, smallest}
                    : std::vector{QSize(1440, 900), QSize(2560, 1440), ordinary, smallest};
}

} // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariable("QT_QPA_PLATFORM") != QStringLiteral("xcb")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        qputenv("QT_QUICK_BACKEND", "software");
    }
    const QGuiApplication application(argc, argv);
    ZorvaneTests::collectWarnings();
    QCommandLineParser parser;
    parser.addOption({QStringLiteral("long-texts"), QStringLiteral("lengthen every text")});
    parser.addOption({QStringLiteral("only"), QStringLiteral("scenes with TEXT in their names"),
                      QStringLiteral("TEXT")});
    parser.addPositionalArgument(QStringLiteral("DIR"), QStringLiteral("a folder that exists"));
    parser.process(application);
    if (parser.positionalArguments().size() != 1) {
        parser.showHelp(2);
    }
    const Wording wording =
        parser.isSet(QStringLiteral("long-texts")) ? Wording::lengthened : Wording::english;
    bool isFine = true;
    for (const Scene& scene : ZorvaneTests::allScenes()) {
        const QString name = QString::fromStdString(scene.name).replace(u' ', u'-');
        if (name.contains(parser.value(QStringLiteral("only")))) {
            for (const QSize size : sizesFor(scene, wording)) {
                isFine =
                    take(scene, size, wording, QDir(parser.positionalArguments()[0])) && isFine;
            }
        }
    }
    return isFine ? EXIT_SUCCESS : EXIT_FAILURE;
}
