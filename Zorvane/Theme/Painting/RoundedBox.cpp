#include "Zorvane/Theme/Painting/RoundedBox.h"

#include <QPainter>

#include <algorithm>

namespace Zorvane {

void RoundedBox::paint(QPainter* painter)
{
    const QRectF area(QPointF(), size());
    const qreal radius = std::min({m_cornerRadius, area.width() / 2, area.height() / 2});
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(Qt::NoPen);
    painter->setBrush(m_color);
    painter->drawRoundedRect(area, radius, radius);
    if (m_outlineColor.alpha() == 0)
        return;
    const qreal half = m_outlineWidth / 2;
    const qreal outlineRadius = std::max(radius - half, 0.0);
    painter->setPen(QPen(m_outlineColor, m_outlineWidth));
    painter->setBrush(Qt::NoBrush);
    painter->drawRoundedRect(area.adjusted(half, half, -half, -half), outlineRadius, outlineRadius);
}

} // namespace Zorvane
