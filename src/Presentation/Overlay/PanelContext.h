#pragma once

#include "Core/Agents/AgentDecision.h"
#include "Core/Sessions/CompletedRecord.h"
#include "Core/Sessions/Session.h"

#include <functional>

namespace morvane {

class DigitShortcuts;
class InlineEditing;
class MorvaneSettings;
class MotionPreference;
class PixelTimeline;
class Scheduler;
class SessionStore;

/// The one road by which what a person wants leaves a panel: what its owner does about it. What is
/// unset is not offered. A plain value, passed down to the rows.
struct PanelActions {
    std::function<void(const QString &sessionID, const AgentDecision &)> onDecide;
    std::function<void(const QString &sessionID, const QString &question, const QString &option)>
        onAnswer;
    std::function<void(const Session &)> onSelect;
    std::function<void(const QString &cwd, const QString &name)> onRenameCommit;
    std::function<void(const CompletedRecord &)> onReopen;
    std::function<void(const Session &, const QString &text)> onReply;
    std::function<void()> onOpenSettings;
};

/// What every panel on every display is made from. All of it outlives the panels.
struct PanelContext {
    const SessionStore &store; ///< to be read; what changes it leaves by `actions`
    MorvaneSettings &settings;
    Scheduler &scheduler;
    MotionPreference &motion;
    InlineEditing &editing;
    PixelTimeline &timeline;
    PanelActions actions;
    const DigitShortcuts *digitShortcuts = nullptr; ///< none where there are no such keys
};

} // namespace morvane
