#pragma once

#include <QImage>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QSize>
#include <QStringList>
#include <QVariantMap>

#include <memory>

namespace ZorvaneTests {

/// A window that shows pieces of QML on black, without anything moving.
class Stage
{
public:
    /// `content` is the inside of the window, with the theme imported; `properties` are values of
    /// the properties that it declares. Fails the test if it doesn't load or warns.
    explicit Stage(const QString& content, QSize size = QSize(400, 300),
                   const QVariantMap& properties = {});
    ~Stage();
    Stage(const Stage&) = delete;
    Stage& operator=(const Stage&) = delete;

    [[nodiscard]] QQuickWindow& window() const { return *m_window; }

    /// The item with this `objectName`.
    [[nodiscard]] QQuickItem& item(const QString& name) const;

    /// What the window shows now.
    [[nodiscard]] QImage picture() const;

private:
    QQmlEngine m_engine;
    QStringList m_warnings;
    std::unique_ptr<QQuickWindow> m_window;
};

} // namespace ZorvaneTests
