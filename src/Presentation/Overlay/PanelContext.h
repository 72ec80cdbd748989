#pragma once

#include "Core/Agents/AgentDecision.h"

#include <QString>

#include <functional>

namespace morvane {

class DigitShortcuts;
class InlineEditing;
class MorvaneSettings;
class MotionPreference;
class PixelTimeline;
class ReplyDrafts;
class Scheduler;
class SessionStore;
class UsagePoller;
struct CompletedRecord;
struct Session;

/// Callbacks for everything that a person can ask for in a panel; a panel acts on the program only
/// through these. An action that is unset isn't offered. A plain value, passed down to the rows.
struct PanelActions {
    std::function<void(const QString &sessionID, const AgentDecision &)> onDecide;
    std::function<void(const QString &sessionID, const QString &question, const QString &option)>
        onAnswer;
    std::function<void(const Session &)> onSelect;
    std::function<void(const QString &cwd, const QString &name)> onRenameCommit;
    std::function<void(const CompletedRecord &)> onReopen;
    /// `told` is called once, with whether the text was sent, as far as that can be known.
    std::function<void(const Session &, const QString &text,
                       const std::function<void(bool isSent)> &told)>
        onReply;
    /// Whether a reply could reach the session; if this is unset, none can.
    std::function<bool(const Session &)> canReply;
    std::function<void()> onOpenSettings;
    std::function<void()> onRefreshUsage;
};

/// What every panel on every display depends on. All of it outlives the panels.
struct PanelContext {
    const SessionStore &store; ///< read only; changes go through `actions`
    const UsagePoller &usage;  ///< likewise
    MorvaneSettings &settings;
    Scheduler &scheduler;
    MotionPreference &motion;
    InlineEditing &editing;
    PixelTimeline &timeline;
    ReplyDrafts &replyDrafts;
    PanelActions actions;
    const DigitShortcuts *digitShortcuts = nullptr; ///< none where there are no such keys
};

} // namespace morvane
