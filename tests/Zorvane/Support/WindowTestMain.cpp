#include <QGuiApplication>
#include <QtQml/QQmlExtensionPlugin>

#include <gmock/gmock.h>

Q_IMPORT_QML_PLUGIN(ZorvanePlugin)

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_QUICK_BACKEND", "software");
    testing::InitGoogleMock(&argc, argv);
    const QGuiApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
