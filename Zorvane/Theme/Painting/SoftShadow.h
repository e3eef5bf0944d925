#pragma once

#include "Zorvane/Theme/Painting/PaintedShape.h"

#include <QColor>
#include <QtQml/qqmlregistration.h>

namespace Zorvane {

/// The shadow around a rounded rectangle. It is cut out under the rectangle itself, so that it does
/// not tint a translucent shape. The item has to be larger than the shape by `margin` on every
/// side.
class SoftShadow : public Zorvane::PaintedShape
{
    Q_OBJECT
    Q_PROPERTY(QColor color MEMBER m_color NOTIFY changed REQUIRED)
    /// The standard deviation of the blur.
    Q_PROPERTY(qreal radius MEMBER m_radius NOTIFY changed REQUIRED)
    Q_PROPERTY(qreal offsetY MEMBER m_offsetY NOTIFY changed)
    /// The corner radius of the shape.
    Q_PROPERTY(qreal cornerRadius MEMBER m_cornerRadius NOTIFY changed)
    Q_PROPERTY(qreal margin READ margin NOTIFY changed)
    QML_ELEMENT

public:
    using PaintedShape::PaintedShape;

    [[nodiscard]] qreal margin() const;

    void paint(QPainter* painter) override;

private:
    QColor m_color;
    qreal m_radius = 0;
    qreal m_offsetY = 0;
    qreal m_cornerRadius = 0;
};

} // namespace Zorvane
