#include "Zorvane/Theme/Painting/RoundedBox.h"

#include <QLinearGradient>
#include <QPainter>

#include <algorithm>

namespace Zorvane {

QBrush RoundedBox::fill(const QRectF& box) const
{
    if (!m_endColor.isValid() || m_endColor == m_color) {
        return m_color;
    }
    QLinearGradient gradient(box.topLeft(), box.bottomRight());
    gradient.setColorAt(0, m_color);
    gradient.setColorAt(1, m_endColor);
    return gradient;
}

void RoundedBox::paint(QPainter* painter)
{
    // The painter cuts off whatever lies outside the item.
    const qreal hidden = m_cornerRadius + m_outlineWidth;
    const QRectF box =
        QRectF(QPointF(), size())
            .adjusted(0, m_continuesAbove ? -hidden : 0, 0, m_continuesBelow ? hidden : 0);
    const qreal radius = std::min({m_cornerRadius, box.width() / 2, box.height() / 2});
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(Qt::NoPen);
    painter->setBrush(fill(box));
    painter->drawRoundedRect(box, radius, radius);
    if (m_outlineColor.alpha() == 0) {
        return;
    }
    const qreal half = m_outlineWidth / 2;
    const qreal outlineRadius = std::max(radius - half, 0.0);
    painter->setPen(QPen(m_outlineColor, m_outlineWidth));
    painter->setBrush(Qt::NoBrush);
    painter->drawRoundedRect(box.adjusted(half, half, -half, -half), outlineRadius, outlineRadius);
}

} // namespace Zorvane
