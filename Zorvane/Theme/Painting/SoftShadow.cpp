#include "Zorvane/Theme/Painting/SoftShadow.h"

#include "Zorvane/Theme/Painting/GaussianBlur.h"

#include <QImage>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace Zorvane {
namespace {

/// The shadow is blurred on an image small enough for the radius to be this many pixels. The blur
/// leaves no detail that would need more.
constexpr double pixelsOfRadius = 4;

QImage shadowImage(QSize size, const QRectF& shape, double cornerRadius, double blurRadius,
                   const QColor& color)
{
    QImage mask(size, QImage::Format_Alpha8);
    mask.fill(0);
    QPainter painter(&mask);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::black);
    painter.drawRoundedRect(shape, cornerRadius, cornerRadius);
    painter.end();

    Plane plane{size.width(), size.height(), {}};
    for (int y = 0; y < size.height(); ++y) {
        const uchar* line = mask.constScanLine(y);
        plane.values.insert(plane.values.end(), line, line + size.width());
    }
    plane = gaussianBlurred(plane, blurRadius);

    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    const QColor opaque = color.toRgb();
    auto value = plane.values.cbegin();
    for (int y = 0; y < size.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < size.width(); ++x) {
            const double alpha = *value++ * color.alphaF();
            line[x] = qPremultiply(qRgba(opaque.red(), opaque.green(), opaque.blue(),
                                         static_cast<int>(std::lround(alpha))));
        }
    }
    return image;
}

} // namespace

qreal SoftShadow::margin() const
{
    return std::ceil(m_radius * 2.8 + std::abs(m_offsetY));
}

void SoftShadow::paint(QPainter* painter)
{
    const qreal around = margin();
    const QRectF shape = QRectF(QPointF(), size()).adjusted(around, around, -around, -around);
    if (shape.isEmpty()) {
        return;
    }
    const qreal corner = std::min({m_cornerRadius, shape.width() / 2, shape.height() / 2});

    const double scale = painter->deviceTransform().m11();
    const QRectF dropped = shape.translated(0, m_offsetY);
    const double reduced = scale / std::max(1.0, std::floor(m_radius * scale / pixelsOfRadius));
    const QImage blurred = shadowImage((size() * reduced).toSize() + QSize(1, 1),
                                       {dropped.topLeft() * reduced, dropped.size() * reduced},
                                       corner * reduced, m_radius * reduced, m_color);
    QImage image((size() * scale).toSize(), QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(scale);
    image.fill(Qt::transparent);

    // Half a pixel stays under the antialiased edge of the shape, or a gap would show.
    const qreal rim = 0.5;
    QPainter drawing(&image);
    drawing.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    drawing.drawImage(QRectF(QPointF(), QSizeF(blurred.size()) / reduced), blurred);
    drawing.setCompositionMode(QPainter::CompositionMode_DestinationOut);
    drawing.setPen(Qt::NoPen);
    drawing.setBrush(Qt::black);
    drawing.drawRoundedRect(shape.adjusted(rim, rim, -rim, -rim), std::max(corner - rim, 0.0),
                            std::max(corner - rim, 0.0));
    drawing.end();
    painter->drawImage(QPointF(), image);
}

} // namespace Zorvane
