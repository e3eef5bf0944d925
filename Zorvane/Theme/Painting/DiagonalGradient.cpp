#include "Zorvane/Theme/Painting/DiagonalGradient.h"

#include <QLinearGradient>
#include <QPainter>

#include <algorithm>

namespace Zorvane {

void DiagonalGradient::paint(QPainter* painter)
{
    const QRectF area(QPointF(), size());
    const qreal radius = std::min({m_cornerRadius, area.width() / 2, area.height() / 2});
    QLinearGradient gradient(area.topLeft(), area.bottomRight());
    gradient.setColorAt(0, m_from);
    gradient.setColorAt(1, m_to);
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(Qt::NoPen);
    painter->setBrush(gradient);
    painter->drawRoundedRect(area, radius, radius);
}

} // namespace Zorvane
