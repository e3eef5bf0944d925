#include "Zorvane/Screens/Results/CardPart.h"

#include <QPainter>

namespace Zorvane {

namespace {

constexpr qreal outlineWidth = 1;

} // namespace

void CardPart::paint(QPainter* painter)
{
    // The rest of the box lies outside of what is painted.
    const qreal hidden = m_cornerRadius + outlineWidth;
    const QRectF box(0, m_isFirst ? 0 : -hidden, width(),
                     height() + (m_isFirst ? 0 : hidden) + (m_isLast ? 0 : hidden));
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(Qt::NoPen);
    painter->setBrush(m_color);
    painter->drawRoundedRect(box, m_cornerRadius, m_cornerRadius);
    if (m_outlineColor.alpha() == 0) {
        return;
    }
    const qreal half = outlineWidth / 2;
    const qreal outlineRadius = m_cornerRadius - half;
    painter->setPen(QPen(m_outlineColor, outlineWidth));
    painter->setBrush(Qt::NoBrush);
    painter->drawRoundedRect(box.adjusted(half, half, -half, -half), outlineRadius, outlineRadius);
}

} // namespace Zorvane
