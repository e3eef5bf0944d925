#include "Zorvane/Theme/Tokens/SymbolImages.h"

#include <QFile>
#include <QPainter>
#include <QQmlEngine>
#include <QSvgRenderer>

namespace Zorvane {
namespace {

constexpr QSize defaultSize(24, 24);

QImage drawing(const QString& name, QSize size)
{
    const QString path = QStringLiteral(":/Zorvane/Resources/symbols/%1.svg").arg(name);
    if (!QFile::exists(path)) {
        return {};
    }
    QSvgRenderer renderer(path);
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::black);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    renderer.setAspectRatioMode(Qt::KeepAspectRatio);
    renderer.render(&painter);
    return image;
}

/// Brightness becomes opacity.
QImage tinted(QImage image, const QColor& color)
{
    const QColor tint = color.toRgb();
    for (int y = 0; y < image.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            const int alpha = qRed(line[x]) * tint.alpha() / 255;
            line[x] = qPremultiply(qRgba(tint.red(), tint.green(), tint.blue(), alpha));
        }
    }
    return image;
}

} // namespace

SymbolImageProvider::SymbolImageProvider() : QQuickImageProvider(QQuickImageProvider::Image) {}

QImage SymbolImageProvider::requestImage(const QString& id, QSize* size, const QSize& requestedSize)
{
    const QString name = id.section(QLatin1Char('?'), 0, 0);
    const QColor color(QLatin1Char('#') + id.section(QLatin1Char('?'), 1));
    const QSize pixels = requestedSize.isEmpty() ? defaultSize : requestedSize;
    if (size != nullptr) {
        *size = pixels;
    }
    const QImage image = drawing(name, pixels);
    return image.isNull() ? image : tinted(image, color.isValid() ? color : QColor(Qt::white));
}

SymbolImages* SymbolImages::create(QQmlEngine* engine, QJSEngine* /*scriptEngine*/)
{
    engine->addImageProvider(QStringLiteral("symbol"), new SymbolImageProvider);
    return new SymbolImages;
}

QUrl SymbolImages::url(const QString& name, const QColor& color) const
{
    if (name.isEmpty()) {
        return {};
    }
    return QUrl(
        QStringLiteral("image://symbol/%1?%2").arg(name, color.name(QColor::HexArgb).sliced(1)));
}

} // namespace Zorvane
