#include "tests/Zorvane/Support/Stage.h"

#include <QQmlComponent>
#include <QTest>

#include <gtest/gtest.h>

#include <stdexcept>

namespace ZorvaneTests {

Stage::Stage(const QString& content, QSize size, const QVariantMap& properties)
{
    QObject::connect(&m_engine, &QQmlEngine::warnings, &m_engine,
                     [this](const QList<QQmlError>& warnings) {
                         for (const QQmlError& warning : warnings)
                             m_warnings << warning.toString();
                     });
    m_engine.addImportPath(QStringLiteral("qrc:/"));
    QQmlComponent component(&m_engine);
    component.setData(QStringLiteral("import QtQuick\nimport Zorvane\n"
                                     "Window { visible: true; width: %1; height: %2\n"
                                     "color: \"black\"\n"
                                     "Component.onCompleted: Theme.animated = false\n%3\n}")
                          .arg(size.width())
                          .arg(size.height())
                          .arg(content)
                          .toUtf8(),
                      QUrl());
    m_window.reset(qobject_cast<QQuickWindow*>(component.createWithInitialProperties(properties)));
    if (m_window == nullptr)
        throw std::runtime_error(component.errorString().toStdString());
    if (!QTest::qWaitForWindowExposed(m_window.get()))
        throw std::runtime_error("the window is not shown");
}

Stage::~Stage()
{
    m_window.reset();
    EXPECT_TRUE(m_warnings.isEmpty()) << m_warnings.join(QLatin1Char('\n')).toStdString();
}

QQuickItem& Stage::item(const QString& name) const
{
    auto* item = m_window->findChild<QQuickItem*>(name);
    if (item == nullptr)
        throw std::runtime_error("no item " + name.toStdString());
    return *item;
}

QImage Stage::picture() const
{
    return m_window->grabWindow().convertToFormat(QImage::Format_RGB32);
}

} // namespace ZorvaneTests
