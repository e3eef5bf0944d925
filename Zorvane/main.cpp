#include <QGuiApplication>
#include <QQmlApplicationEngine>
#include <QtQml/QQmlExtensionPlugin>

Q_IMPORT_QML_PLUGIN(ZorvanePlugin)

int main(int argc, char** argv)
{
    const QGuiApplication application(argc, argv);
    QQmlApplicationEngine engine;
    engine.addImportPath(QStringLiteral("qrc:/"));
    engine.load(QUrl(QStringLiteral("qrc:/Zorvane/Shell/Main.qml")));
    return engine.rootObjects().isEmpty() ? 1 : QGuiApplication::exec();
}
