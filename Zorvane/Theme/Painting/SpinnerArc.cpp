#include "Zorvane/Theme/Painting/SpinnerArc.h"

#include <QConicalGradient>
#include <QPainter>

namespace Zorvane {

void SpinnerArc::paint(QPainter* painter)
{
    const qreal inset = m_lineWidth / 2 + 0.5;
    const QRectF circle = QRectF(QPointF(), size()).adjusted(inset, inset, -inset, -inset);
    QColor clear = m_color;
    clear.setAlphaF(0);

    // Degrees run counter-clockwise from three o'clock. The head is at 0, but its round end reaches
    // past it, into the last tenth of the gradient.
    QConicalGradient fade(circle.center(), 0);
    fade.setColorAt(0, m_color);
    fade.setColorAt(0.75, clear);
    fade.setColorAt(0.9, clear);
    fade.setColorAt(0.9001, m_color);
    fade.setColorAt(1, m_color);

    painter->setRenderHint(QPainter::Antialiasing);
    QColor track = m_color;
    track.setAlphaF(m_color.alphaF() * 0.16F);
    painter->setPen(QPen(track, m_lineWidth));
    painter->drawEllipse(circle);
    painter->translate(circle.center());
    painter->rotate(m_angle);
    painter->translate(-circle.center());
    painter->setPen(QPen(fade, m_lineWidth, Qt::SolidLine, Qt::RoundCap));
    painter->drawArc(circle, 0, 270 * 16);
}

} // namespace Zorvane
