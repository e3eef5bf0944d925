#include "Zorvane/Screens/Results/RingArc.h"

#include <QPainter>
#include <QPainterPath>

namespace Zorvane {

namespace {

constexpr qreal degreesOfCircle = 360;
constexpr qreal twelveOClock = 90;
constexpr qreal miterLimit = 10;

} // namespace

void RingArc::paint(QPainter* painter)
{
    QRectF circle(0, 0, m_diameter, m_diameter);
    circle.moveCenter(QRectF(QPointF(), size()).center());
    QPainterPath arc;
    // Painter degrees run counter-clockwise from three o'clock.
    const qreal from = twelveOClock - m_start * degreesOfCircle;
    arc.arcMoveTo(circle, from);
    arc.arcTo(circle, from, -(m_end - m_start) * degreesOfCircle);

    QPen pen(m_color, m_lineWidth, Qt::SolidLine, Qt::FlatCap, Qt::MiterJoin);
    pen.setMiterLimit(miterLimit);
    painter->setRenderHint(QPainter::Antialiasing);
    painter->strokePath(arc, pen);
}

} // namespace Zorvane
