#pragma once

#include "Zorvane/Theme/Painting/PaintedShape.h"

#include <QColor>
#include <QtQml/qqmlregistration.h>

namespace Zorvane {

/// A horizontal strip of a rounded box with an outline: with the upper corners, the lower ones,
/// both or none. Strips that lie one below the other make one box, without clipping, which would
/// leave seams where the screen's pixels are not whole.
class CardPart : public Zorvane::PaintedShape
{
    Q_OBJECT
    Q_PROPERTY(bool isFirst MEMBER m_isFirst NOTIFY changed REQUIRED)
    Q_PROPERTY(bool isLast MEMBER m_isLast NOTIFY changed REQUIRED)
    Q_PROPERTY(QColor color MEMBER m_color NOTIFY changed REQUIRED)
    Q_PROPERTY(QColor outlineColor MEMBER m_outlineColor NOTIFY changed)
    Q_PROPERTY(qreal cornerRadius MEMBER m_cornerRadius NOTIFY changed REQUIRED)
    QML_ELEMENT

public:
    using PaintedShape::PaintedShape;

    void paint(QPainter* painter) override;

private:
    bool m_isFirst = true;
    bool m_isLast = true;
    QColor m_color;
    QColor m_outlineColor = Qt::transparent;
    qreal m_cornerRadius = 0;
};

} // namespace Zorvane
