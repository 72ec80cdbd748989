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

/// The one road by which what a person wants leaves a panel: what its owner does about it. What is
/// unset is not offered. A plain value, passed down to the rows.
struct PanelActions {
    std::function<void(const QString &sessionID, const AgentDecision &)> onDecide;
    std::function<void(const QString &sessionID, const QString &question, const QString &option)>
        onAnswer;
    std::function<void(const Session &)> onSelect;
    std::function<void(const QString &cwd, const QString &name)> onRenameCommit;
    std::function<void(const CompletedRecord &)> onReopen;
    /// `told` is called once, with whether the text has gone out as far as can be told.
    std::function<void(const Session &, const QString &text,
                       const std::function<void(bool isSent)> &told)>
        onReply;
    /// Whether there is a way by which a reply would reach the session; unset, there is none.
    std::function<bool(const Session &)> canReply;
    std::function<void()> onOpenSettings;
    std::function<void()> onRefreshUsage;
};

/// What every panel on every display is made from. All of it outlives the panels.
struct PanelContext {
    const SessionStore &store; ///< to be read; what changes it leaves by `actions`
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
