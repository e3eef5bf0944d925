#pragma once

#include <QQuickPaintedItem>
#include <QtQml/qqmlregistration.h>

namespace Zorvane {

/// What is painted from its properties, and anew when one of them changes. Derived types name it
/// with its namespace, or the tools of QML do not find it.
class PaintedShape : public QQuickPaintedItem
{
    Q_OBJECT
    QML_ANONYMOUS

public:
    explicit PaintedShape(QQuickItem* parent = nullptr);

signals:
    /// One of the properties may be another.
    void changed();
};

} // namespace Zorvane
