#include <QGuiApplication>
#include <QtQml/QQmlExtensionPlugin>

#include <gmock/gmock.h>

#include <cstring>

Q_IMPORT_QML_PLUGIN(ZorvanePlugin)

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
    return RUN_ALL_TESTS();
}
