#include <QGuiApplication>
#include <QtQml/QQmlExtensionPlugin>

#include <gmock/gmock.h>

#include <cstring>

Q_IMPORT_QML_PLUGIN(ZorvanePlugin)

namespace {

/// A warning fails the test that it comes in.
void fail(QtMsgType type, const QMessageLogContext& context, const QString& text)
{
    // The platform plugin mentions its own limits.
    const bool isOfPlatform = QLatin1String(context.category).startsWith(QLatin1String("qt.qpa")) ||
                              text.startsWith(QStringLiteral("This plugin does not support"));
    if (type != QtDebugMsg && type != QtInfoMsg && !isOfPlatform) {
        ADD_FAILURE() << text.toStdString();
    }
}

} // namespace

/// Draws in software without a display or, with "--opengl", on an X11 display as the program does.
int main(int argc, char** argv)
{
    testing::InitGoogleMock(&argc, argv);
    const bool isOpenGL = argc > 1 && std::strcmp(argv[1], "--opengl") == 0;
    qputenv("QT_QPA_PLATFORM", isOpenGL ? "xcb" : "offscreen");
    if (!isOpenGL) {
        qputenv("QT_QUICK_BACKEND", "software");
    }
    const QGuiApplication application(argc, argv);
    qInstallMessageHandler(fail);
    return RUN_ALL_TESTS();
}
