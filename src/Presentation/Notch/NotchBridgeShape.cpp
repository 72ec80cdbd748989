#include "Presentation/Notch/NotchBridgeShape.h"

namespace morvane {

QPainterPath NotchBridgeShape::path(const QRectF &rect) const {
    const double left = rect.left() + topCornerRadius;
    const double right = rect.right() - topCornerRadius;
    const double shoulder = rect.top() + topCornerRadius;
    const double bottom = rect.bottom();

    QPainterPath result(rect.topLeft());
    result.quadTo(left, rect.top(), left, shoulder);
    result.lineTo(left, bottom - bottomCornerRadius);
    result.quadTo(left, bottom, left + bottomCornerRadius, bottom);
    result.lineTo(right - bottomCornerRadius, bottom);
    result.quadTo(right, bottom, right, bottom - bottomCornerRadius);
    result.lineTo(right, shoulder);
    result.quadTo(right, rect.top(), rect.right(), rect.top());
    result.closeSubpath();
    return result;
}

} // namespace morvane
