#pragma once

#include <QImage>
#include <QList>

namespace morvane {

/// A window, or a part of one, and the function that paints its picture.
struct WindowScene {
    const char *name; ///< of the picture's file, without its ending
    QImage (*paint)();
};

/// Every page of the welcome, every group of the settings, every message of the updates window, and
/// the tray's icon.
const QList<WindowScene> &windowScenes();

} // namespace morvane
