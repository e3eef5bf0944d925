#include "Zorvane/Theme/SoftShadow.h"

#include "Zorvane/Theme/GaussianBlur.h"

#include <QImage>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace Zorvane {
namespace {

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
    if (shape.isEmpty())
        return;
    const qreal corner = std::min({m_cornerRadius, shape.width() / 2, shape.height() / 2});

    const double scale = painter->deviceTransform().m11();
    const QRectF dropped = shape.translated(0, m_offsetY);
    QImage image =
        shadowImage((size() * scale).toSize(), {dropped.topLeft() * scale, dropped.size() * scale},
                    corner * scale, m_radius * scale, m_color);
    image.setDevicePixelRatio(scale);

    // Half a pixel stays under the shape's rim, or its smooth edge would show a gap.
    const qreal rim = 0.5;
    QPainter cutter(&image);
    cutter.setRenderHint(QPainter::Antialiasing);
    cutter.setCompositionMode(QPainter::CompositionMode_DestinationOut);
    cutter.setPen(Qt::NoPen);
    cutter.setBrush(Qt::black);
    cutter.drawRoundedRect(shape.adjusted(rim, rim, -rim, -rim), std::max(corner - rim, 0.0),
                           std::max(corner - rim, 0.0));
    cutter.end();
    painter->drawImage(QPointF(), image);
}

} // namespace Zorvane
