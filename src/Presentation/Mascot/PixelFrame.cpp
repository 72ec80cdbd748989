#include "Presentation/Mascot/PixelFrame.h"

namespace morvane {

PixelFrame PixelFrame::dimmed() const {
    PixelFrame result = *this;
    for (QString &row : result.rows) {
        row.replace(u'X', u'o');
    }
    return result;
}

} // namespace morvane
