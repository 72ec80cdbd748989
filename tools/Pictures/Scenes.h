#pragma once

#include "Pictures/Stage.h"

#include <QList>

namespace morvane {

/// Something to see: a stage and what happens on it before the picture is taken.
struct Scene {
    const char *name; ///< of the picture's file, without its ending
    Stage::Screen screen;
    void (*play)(Stage &stage);
};

/// Every state that the capsule, the panel and the notch can be in.
const QList<Scene> &scenes();

} // namespace morvane
