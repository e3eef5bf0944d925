#pragma once

#include <QColor>
#include <QQuickPaintedItem>
#include <QtQml/qqmlregistration.h>

namespace Zorvane {

/// Three quarters of a circle whose end fades out, clockwise from its round head.
class SpinnerArc : public QQuickPaintedItem
{
    Q_OBJECT
    Q_PROPERTY(QColor color MEMBER m_color NOTIFY changed REQUIRED)
    Q_PROPERTY(qreal lineWidth MEMBER m_lineWidth NOTIFY changed REQUIRED)
    QML_ELEMENT

public:
    explicit SpinnerArc(QQuickItem* parent = nullptr);

    void paint(QPainter* painter) override;

signals:
    void changed();

private:
    QColor m_color;
    qreal m_lineWidth = 2;
};

} // namespace Zorvane
