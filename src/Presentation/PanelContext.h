#pragma once

#include "Presentation/PanelActions.h"

namespace morvane {

class InlineEditing;
class MorvaneSettings;
class MotionPreference;
class PixelTimeline;
class Scheduler;
class SessionStore;

/// What every panel on every display is made from. All of it outlives the panels.
struct PanelContext {
    SessionStore &store;
    MorvaneSettings &settings;
    Scheduler &scheduler;
    MotionPreference &motion;
    InlineEditing &editing;
    PixelTimeline &timeline;
    PanelActions actions;
    bool showsDigitShortcuts = false; ///< whether the digit keys work, so that the rows name them
};

} // namespace morvane
