#include "App/Launch.h"
#include "NotchedDisplays.h"

#include <QByteArray>

namespace {

/// The notch's size from an argument such as "200x32", which is also the default.
QSize notchSize(int argc, char **argv) {
    const QList<QByteArray> sides = QByteArray(argc > 1 ? argv[1] : "").split('x');
    const QSize said(sides.value(0).toInt(), sides.value(1).toInt());
    return said.isEmpty() ? QSize(200, 32) : said;
}

} // namespace

int main(int argc, char **argv) {
    const QSize notch = notchSize(argc, argv);
    int others = 1; // the program itself takes no size
    return morvane::launch(others, argv, [notch](morvane::PlatformServices &platform) {
        if (platform.hasScreen) {
            platform.displays =
                std::make_unique<morvane::NotchedDisplays>(std::move(platform.displays), notch);
        }
    });
}
