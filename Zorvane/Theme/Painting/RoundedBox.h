#pragma once

#include "Zorvane/Theme/Painting/PaintedShape.h"

#include <QColor>
#include <QtQml/qqmlregistration.h>

namespace Zorvane {

/// A filled rounded rectangle with an outline inside its bounds and over its fill. Unlike Rectangle
/// it has no seams where the software renderer meets a fractional scale; it takes a texture of its
/// size, so it is meant for small elements.
class RoundedBox : public Zorvane::PaintedShape
{
    Q_OBJECT
    Q_PROPERTY(QColor color MEMBER m_color NOTIFY changed)
    Q_PROPERTY(QColor outlineColor MEMBER m_outlineColor NOTIFY changed)
    Q_PROPERTY(qreal outlineWidth MEMBER m_outlineWidth NOTIFY changed)
    Q_PROPERTY(qreal cornerRadius MEMBER m_cornerRadius NOTIFY changed)
    QML_ELEMENT

public:
    using PaintedShape::PaintedShape;

    void paint(QPainter* painter) override;

private:
    QColor m_color = Qt::transparent;
    QColor m_outlineColor = Qt::transparent;
    qreal m_outlineWidth = 1;
    qreal m_cornerRadius = 0;
};

} // namespace Zorvane
