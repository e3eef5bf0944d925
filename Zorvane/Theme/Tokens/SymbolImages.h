#pragma once

#include <QColor>
#include <QObject>
#include <QQuickImageProvider>
#include <QUrl>
#include <QtQml/qqmlregistration.h>

class QJSEngine;
class QQmlEngine;

namespace Zorvane {

/// Renders the symbols as "image://symbol/NAME?AARRGGBB". The drawings are white on black;
/// white takes the colour and black becomes transparent. An unknown name gives a null image, which
/// the Image element reports as an error.
class SymbolImageProvider : public QQuickImageProvider
{
public:
    SymbolImageProvider();

    QImage requestImage(const QString& id, QSize* size, const QSize& requestedSize) override;
};

/// Makes the URLs of symbols. Its creation adds the image provider to the QML engine.
class SymbolImages : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    static SymbolImages* create(QQmlEngine* engine, QJSEngine* scriptEngine);

    [[nodiscard]] Q_INVOKABLE QUrl url(const QString& name, const QColor& color) const;

private:
    SymbolImages() = default;
};

} // namespace Zorvane
