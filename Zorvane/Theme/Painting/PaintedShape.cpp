#include "Zorvane/Theme/Painting/PaintedShape.h"

namespace Zorvane {

PaintedShape::PaintedShape(QQuickItem* parent) : QQuickPaintedItem(parent)
{
    connect(this, &PaintedShape::changed, this, [this] { update(); });
}

} // namespace Zorvane
