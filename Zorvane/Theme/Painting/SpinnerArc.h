#pragma once

#include "Zorvane/Theme/Painting/PaintedShape.h"

#include <QColor>
#include <QtQml/qqmlregistration.h>

namespace Zorvane {

/// Three quarters of a circle that fade out behind a round head. It is repainted for each
/// angle, since the software renderer gives rotated items ragged edges.
class SpinnerArc : public Zorvane::PaintedShape
{
    Q_OBJECT
    Q_PROPERTY(QColor color MEMBER m_color NOTIFY changed REQUIRED)
    Q_PROPERTY(qreal lineWidth MEMBER m_lineWidth NOTIFY changed REQUIRED)
    /// The angle of the head, in degrees clockwise from three o'clock.
    Q_PROPERTY(qreal angle MEMBER m_angle NOTIFY changed)
    QML_ELEMENT

public:
    using PaintedShape::PaintedShape;

    void paint(QPainter* painter) override;

private:
    QColor m_color;
    qreal m_lineWidth = 2;
    qreal m_angle = 0;
};

} // namespace Zorvane
