#include "CleanCore/Commands/Running/ChildSignal.h"
#include "CleanCore/Rules/ResourceBundle.h"
#include "Zorvane/Desktop/ReducedMotion.h"
#include "Zorvane/Desktop/TerminationSignals.h"
#include "Zorvane/Startup/ApplicationEnvironment.h"
#include "Zorvane/State/AppState.h"
#include "Zorvane/State/Models/Models.h"

#include "Words/StartErrorText.h"

#include <CLI/CLI.hpp>
#include <QGuiApplication>
#include <QIcon>
#include <QQmlApplicationEngine>
#include <QQuickWindow>
#include <QtQml/QQmlExtensionPlugin>
#include <cstdlib>
#include <iostream>

Q_IMPORT_QML_PLUGIN(ZorvanePlugin)

namespace {

using Zorvane::ApplicationOptions;

struct CommandLine
{
    ApplicationOptions options;
    CLI::App app{"Zorvane shows what caches, logs and leftovers hold, and removes what you choose.",
                 "zorvane"};

    CommandLine()
    {
        app.set_version_flag("--version", "zorvane " ZORVANE_VERSION);
        app.add_option("--home", options.home, "Use another home folder, to try the program out")
            ->type_name("DIR");
        app.add_option("--catalog", options.catalog,
                       "Use the areas in FILE instead of the built-in ones")
            ->type_name("FILE");
        app.add_option("--tools", options.tools,
                       "With --home: look for the external tools in DIR; / allows the system's "
                       "programs for cloud drives, and for nothing else")
            ->type_name("DIR");
        app.add_option("--mirror", options.mirror, "With --home: use DIR as the cloud")
            ->type_name("DIR");
        app.add_flag("--no-animations", options.noAnimations, "Turn animations off");
        app.add_flag("--software", options.software, "Draw without the graphics card");
    }
};

int show(int& argc, char** argv, const ApplicationOptions& options,
         Zorvane::Environment environment)
{
    // Without this Qt would leave compiled copies of the screens in the home that is being cleaned.
    qputenv("QML_DISABLE_DISK_CACHE", "1");
    if (options.software) {
        QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    }
    QGuiApplication application(argc, argv);
    QGuiApplication::setApplicationName(QStringLiteral("zorvane"));
    QGuiApplication::setApplicationDisplayName(QStringLiteral("Zorvane"));
    QGuiApplication::setApplicationVersion(QStringLiteral(ZORVANE_VERSION));
    QGuiApplication::setWindowIcon(QIcon(QStringLiteral(":/Zorvane/Resources/zorvane.svg")));
    QGuiApplication::setDesktopFileName(QStringLiteral("io.github.zorvane.Zorvane"));

    // Sharper than the scene graph's own text, and the same in software and on the graphics card.
    QQuickWindow::setTextRenderType(QQuickWindow::NativeTextRendering);

    Zorvane::AppState state(std::move(environment));
    Zorvane::Models models(state);
    const Zorvane::TerminationSignals termination;
    QObject::connect(&termination.notifier(), &QSocketNotifier::activated, &state,
                     [&state] { state.requestClose(); });
    QQmlApplicationEngine engine;
    engine.addImportPath(QStringLiteral("qrc:/"));
    const bool isAnimated = !options.noAnimations && !Zorvane::wantsReducedMotion();
    engine.setInitialProperties({{QStringLiteral("appState"), QVariant::fromValue(&state)},
                                 {QStringLiteral("models"), QVariant::fromValue(&models)},
                                 {QStringLiteral("animated"), isAnimated}});
    engine.load(QUrl(QStringLiteral("qrc:/Zorvane/Shell/Main.qml")));
    return engine.rootObjects().isEmpty() ? EXIT_FAILURE : QGuiApplication::exec();
}

int complain(std::string_view text, Words::ExitStatus status)
{
    Words::printError("zorvane", text);
    return static_cast<int>(status);
}

int parseAndShow(int argc, char** argv)
{
    CommandLine commandLine;
    try {
        commandLine.app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        if (error.get_exit_code() == static_cast<int>(CLI::ExitCodes::Success)) {
            return commandLine.app.exit(error);
        }
        return complain(Words::usageErrorText(error.what()), Words::ExitStatus::wrongUsage);
    }
    try {
        return show(argc, argv, commandLine.options, Zorvane::makeEnvironment(commandLine.options));
    } catch (const CleanCore::StartError& error) {
        return complain(Words::startErrorText(error), Words::exitStatus(error));
    } catch (const CleanCore::ResourceBundle::Missing&) {
        std::cerr << Words::missingBundleText << '\n';
        return static_cast<int>(Words::ExitStatus::catalogUnusable);
    }
}

} // namespace

int main(int argc, char** argv)
{
    CleanCore::restoreChildSignal();
    const int status = parseAndShow(argc, argv);
    std::cout.flush();
    // A thread that hangs in a tool or a dead file system is not waited for, and must not use what
    // exit() would destroy.
    std::_Exit(status);
}
