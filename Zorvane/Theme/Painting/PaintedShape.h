#pragma once

#include <QQuickPaintedItem>
#include <QtQml/qqmlregistration.h>

namespace Zorvane {

/// An item that is repainted when one of its properties changes. Derived types have to qualify its
/// name, or the QML tools do not find it.
class PaintedShape : public QQuickPaintedItem
{
    Q_OBJECT
    QML_ANONYMOUS

public:
    explicit PaintedShape(QQuickItem* parent = nullptr);

signals:
    /// Shared by all properties of derived types.
    void changed();
};

} // namespace Zorvane
