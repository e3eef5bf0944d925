#pragma once

#include "Zorvane/Theme/Painting/PaintedShape.h"

#include <QColor>
#include <QtQml/qqmlregistration.h>

namespace Zorvane {

/// A rounded rectangle with a gradient from its top-left to its bottom-right corner.
class DiagonalGradient : public Zorvane::PaintedShape
{
    Q_OBJECT
    Q_PROPERTY(QColor fromColor MEMBER m_from NOTIFY changed REQUIRED)
    Q_PROPERTY(QColor toColor MEMBER m_to NOTIFY changed REQUIRED)
    Q_PROPERTY(qreal cornerRadius MEMBER m_cornerRadius NOTIFY changed)
    QML_ELEMENT

public:
    using PaintedShape::PaintedShape;

    void paint(QPainter* painter) override;

private:
    QColor m_from;
    QColor m_to;
    qreal m_cornerRadius = 0;
};

} // namespace Zorvane
