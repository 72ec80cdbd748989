#pragma once

#include <QImage>
#include <QList>

namespace morvane {

/// A window, or a part of one, and what makes the picture of it.
struct WindowScene {
    const char *name; ///< of the picture's file, without its ending
    QImage (*paint)();
};

/// Every page of the welcome, every group of the settings, what the window of the updates tells,
/// and the tray's icon.
const QList<WindowScene> &windowScenes();

} // namespace morvane
