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

using ZorvaneTests::MainWindow;
using ZorvaneTests::Scene;
using ZorvaneTests::Wording;

constexpr QSize ordinarySize(1080, 760);
constexpr QSize furtherSizes[] = {QSize(1440, 900), QSize(2560, 1440)};

struct Options
{
    QDir folder;
    QString renderer;
    Wording wording = Wording::english;
    /// Only scenes whose name holds it.
    QString only;
};

/// Whether the picture was written without a warning.
bool take(const Scene& scene, QSize size, const Options& options)
{
    MainWindow window(size, options.wording);
    ZorvaneTests::play(window, scene.steps);
    const QString name =
        QStringLiteral("%1%2-%3x%4-%5-%6.png")
            .arg(QString::fromStdString(scene.name).replace(u' ', u'-'),
                 options.wording == Wording::lengthened ? QStringLiteral("-long-texts") : QString())
            .arg(size.width())
            .arg(size.height())
            .arg(window.window().effectiveDevicePixelRatio())
            .arg(options.renderer);
    QStringList problems = ZorvaneTests::takeWarnings();
    if (!window.picture().save(options.folder.filePath(name))) {
        problems << QStringLiteral("cannot be written");
    }
    for (const QString& problem : problems) {
        std::cerr << "screenshots: " << name.toStdString() << ": " << problem.toStdString() << '\n';
    }
    return problems.isEmpty();
}

std::vector<QSize> sizesFor(const Scene& scene, const Options& options)
{
    if (options.wording == Wording::lengthened) {
        return {ZorvaneTests::smallestWindow(scene)};
    }
    const bool isScaled = qEnvironmentVariableIsSet("QT_SCALE_FACTOR");
    if (!scene.isRepresentative) {
        return isScaled ? std::vector<QSize>() : std::vector{ordinarySize};
    }
    if (isScaled) {
        return {ordinarySize, ZorvaneTests::smallestWindow(scene)};
    }
    std::vector sizes(std::begin(furtherSizes), std::end(furtherSizes));
    sizes.push_back(ordinarySize);
    sizes.push_back(ZorvaneTests::smallestWindow(scene));
    return sizes;
}

} // namespace

int main(int argc, char** argv)
{
    const bool isOpenGL = qEnvironmentVariable("QT_QPA_PLATFORM") == QStringLiteral("xcb");
    if (!isOpenGL) {
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
    const Options options{
        .folder = QDir(parser.positionalArguments().constFirst()),
        .renderer = isOpenGL ? QStringLiteral("opengl") : QStringLiteral("software"),
        .wording =
            parser.isSet(QStringLiteral("long-texts")) ? Wording::lengthened : Wording::english,
        .only = parser.value(QStringLiteral("only")),
    };
    bool isFine = true;
    for (const Scene& scene : ZorvaneTests::allScenes()) {
        const QString name = QString::fromStdString(scene.name).replace(u' ', u'-');
        if (!name.contains(options.only)) {
            continue;
        }
        for (const QSize size : sizesFor(scene, options)) {
            isFine = take(scene, size, options) && isFine;
        }
    }
    return isFine ? EXIT_SUCCESS : EXIT_FAILURE;
}
