#include "Presentation/PixelArt.h"

namespace morvane::PixelArt {

const PixelFrame &alienA() {
    static const PixelFrame frame{{
        QStringLiteral("..X..X.."),
        QStringLiteral("..X..X.."),
        QStringLiteral(".XXXXXX."),
        QStringLiteral("XX.XX.XX"),
        QStringLiteral("XXXXXXXX"),
        QStringLiteral("X.XXXX.X"),
        QStringLiteral(".X.XX.X."),
        QStringLiteral("X.X..X.X"),
    }};
    return frame;
}

const PixelFrame &alienDone() {
    static const PixelFrame frame{{
        QStringLiteral("X..XX..X"),
        QStringLiteral(".X.XX.X."),
        QStringLiteral(".XXXXXX."),
        QStringLiteral("XX.XX.XX"),
        QStringLiteral("XXXXXXXX"),
        QStringLiteral("X.XXXX.X"),
        QStringLiteral("..X..X.."),
        QStringLiteral(".X....X."),
    }};
    return frame;
}

} // namespace morvane::PixelArt
