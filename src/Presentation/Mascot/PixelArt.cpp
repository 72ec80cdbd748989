#include "Presentation/Mascot/PixelArt.h"

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

const PixelFrame &alienB() {
    static const PixelFrame frame = [] {
        PixelFrame other = alienA();
        other.rows.swapItemsAt(6, 7);
        return other;
    }();
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

const QList<PixelFrame> &working() {
    static const QList<PixelFrame> frames{alienA(), alienB()};
    return frames;
}

const QList<PixelFrame> &needsInput() {
    static const QList<PixelFrame> frames{alienA(), alienA().dimmed()};
    return frames;
}

const QList<PixelFrame> &done() {
    static const QList<PixelFrame> frames{alienDone(), alienDone().dimmed()};
    return frames;
}

const QList<PixelFrame> &idle() {
    static const QList<PixelFrame> frames{alienA().dimmed()};
    return frames;
}

} // namespace morvane::PixelArt
