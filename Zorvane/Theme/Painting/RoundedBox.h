#pragma once

#include "Zorvane/Theme/Painting/PaintedShape.h"

#include <QColor>
#include <QtQml/qqmlregistration.h>

namespace Zorvane {

/// A filled rounded rectangle with an outline inside its bounds and over its fill. Unlike Rectangle
/// it has no seams where the software renderer meets a fractional scale. It needs a texture of its
/// own size, so use it for small elements.
class RoundedBox : public Zorvane::PaintedShape
{
    Q_OBJECT
    Q_PROPERTY(QColor color MEMBER m_color NOTIFY changed)
    /// If set, the fill is a gradient from `color` in the top-left corner to this in the opposite
    /// one.
    Q_PROPERTY(QColor endColor MEMBER m_endColor NOTIFY changed)
    Q_PROPERTY(QColor outlineColor MEMBER m_outlineColor NOTIFY changed)
    Q_PROPERTY(qreal outlineWidth MEMBER m_outlineWidth NOTIFY changed)
    Q_PROPERTY(qreal cornerRadius MEMBER m_cornerRadius NOTIFY changed)
    /// Whether the item is a strip of a taller box: that edge then has neither corners nor outline.
    /// Stacked strips look like one box. Clipping a whole box instead would leave seams at
    /// fractional scales.
    Q_PROPERTY(bool continuesAbove MEMBER m_continuesAbove NOTIFY changed)
    Q_PROPERTY(bool continuesBelow MEMBER m_continuesBelow NOTIFY changed)
    QML_ELEMENT

public:
    using PaintedShape::PaintedShape;

    void paint(QPainter* painter) override;

private:
    [[nodiscard]] QBrush fill(const QRectF& box) const;

    QColor m_color = Qt::transparent;
    QColor m_endColor;
    QColor m_outlineColor = Qt::transparent;
    qreal m_outlineWidth = 1;
    qreal m_cornerRadius = 0;
    bool m_continuesAbove = false;
    bool m_continuesBelow = false;
};

} // namespace Zorvane
