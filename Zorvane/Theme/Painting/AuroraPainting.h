#pragma once

#include "Zorvane/Theme/Painting/PaintedShape.h"

#include <QColor>
#include <QtQml/qqmlregistration.h>

namespace Zorvane {

/// Three soft glows over a dark base. The violet one stays at the top left, the indigo one keeps to
/// the right edge, and the teal one rises from below the bottom edge at 45 % of the width.
/// Repainted only when the size or a colour changes.
class AuroraPainting : public Zorvane::PaintedShape
{
    Q_OBJECT
    Q_PROPERTY(QColor baseColor MEMBER m_base NOTIFY changed REQUIRED)
    Q_PROPERTY(QColor violet MEMBER m_violet NOTIFY changed REQUIRED)
    Q_PROPERTY(QColor indigo MEMBER m_indigo NOTIFY changed REQUIRED)
    Q_PROPERTY(QColor teal MEMBER m_teal NOTIFY changed REQUIRED)
    QML_ELEMENT

public:
    explicit AuroraPainting(QQuickItem* parent = nullptr);

    void paint(QPainter* painter) override;

private:
    QColor m_base;
    QColor m_violet;
    QColor m_indigo;
    QColor m_teal;
};

} // namespace Zorvane
