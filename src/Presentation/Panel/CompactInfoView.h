#pragma once

#include "Platform/Scheduler.h"

#include <QWidget>

#include <optional>

namespace morvane {

class PixelAnimator;
class SessionStore;
struct PanelContext;
class TextLabel;
class UsageMilestoneBadge;
class UsagePoller;

/// Shows, in the closed capsule or beside the notch, how long the first session has been in its
/// state and how many sessions there are; for a moment a milestone of Claude's limits replaces
/// both. Seconds are shown only while the mascot moves, and are updated by its steps; otherwise the
/// time is updated once a minute, and only while it is on screen.
class CompactInfoView : public QWidget {
    Q_OBJECT

public:
    /// The mascot must outlive it.
    CompactInfoView(const PanelContext &context, const PixelAnimator &mascot, QWidget *parent);

    /// Shows what the store and the poller have now.
    void refresh();

    /// The content in words for a screen reader; each is empty while there is nothing to tell.
    QString count() const;
    QString time() const;
    QString milestone() const;

signals:
    /// A minute has passed, and the view may need another width.
    void timeChanged();

protected:
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    int steadyWidth() const;
    QString timeInMinutes() const;
    void showTime();
    void scheduleMinute();

    const SessionStore &m_store;
    const UsagePoller &m_usage;
    Scheduler &m_scheduler;
    const PixelAnimator &m_mascot;
    std::optional<Date> m_since; ///< none while there is nothing to tell
    Task m_minute;
    TextLabel *m_time;
    TextLabel *m_count;
    UsageMilestoneBadge *m_milestone;
};

} // namespace morvane
