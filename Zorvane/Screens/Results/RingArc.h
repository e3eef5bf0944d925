#pragma once

#include "Zorvane/Theme/Painting/PaintedShape.h"

#include <QColor>
#include <QtQml/qqmlregistration.h>

namespace Zorvane {

/// An arc around the centre of the item, clockwise from `start` to `end`. Both are fractions of the
/// circle, counted from twelve o'clock. `diameter` is measured in the middle of the line.
class RingArc : public Zorvane::PaintedShape
{
    Q_OBJECT
    Q_PROPERTY(qreal start MEMBER m_start NOTIFY changed)
    Q_PROPERTY(qreal end MEMBER m_end NOTIFY changed)
    Q_PROPERTY(QColor color MEMBER m_color NOTIFY changed REQUIRED)
    Q_PROPERTY(qreal lineWidth MEMBER m_lineWidth NOTIFY changed REQUIRED)
    Q_PROPERTY(qreal diameter MEMBER m_diameter NOTIFY changed REQUIRED)
    QML_ELEMENT

public:
    using PaintedShape::PaintedShape;

    void paint(QPainter* painter) override;

private:
    qreal m_start = 0;
    qreal m_end = 1;
    QColor m_color;
    qreal m_lineWidth = 1;
    qreal m_diameter = 0;
};

} // namespace Zorvane
