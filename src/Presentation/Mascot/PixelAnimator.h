#pragma once

#include "Core/Sessions/SessionState.h"
#include "Presentation/Mascot/PixelFrameView.h"
#include "Presentation/Mascot/PixelSequence.h"
#include "Presentation/Mascot/PixelTimeline.h"

#include <optional>

namespace morvane {

class MotionPreference;

/// The mascot beside a status. Its pose and colour show the state. It moves while the session works
/// or needs input; when the session is done it blinks for a moment and then rests. Stands still if
/// the person wants reduced motion, and runs no timer while nobody can see it.
class PixelAnimator : public PixelFrameView {
    Q_OBJECT

public:
    /// What the mascot stands for: the state of a session, or none.
    struct Mode {
        std::optional<SessionState> session;

        friend bool operator==(const Mode &, const Mode &) = default;
    };

    /// All but the parent must outlive the mascot.
    PixelAnimator(PixelTimeline &timeline, Scheduler &scheduler, MotionPreference &motion,
                  double pixelSize, QWidget *parent);

    /// `stateSince` is when the shown state began, where that is known.
    void setMode(Mode mode, std::optional<Date> stateSince);

    /// Whether it has a recurring timer at this moment.
    bool isMoving() const { return m_beat.has_value(); }

signals:
    /// It shows its next frame, or has come to rest.
    void stepped();

protected:
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    /// Identifies one finish: a session that finishes again blinks again.
    struct SettleKey {
        Mode mode;
        std::optional<Date> stateSince;

        friend bool operator==(const SettleKey &, const SettleKey &) = default;
    };

    void refresh();
    void settle();
    void follow();
    void step();
    void showStep();
    bool isAnimated() const { return m_sequence.frames.size() > 1; }

    PixelTimeline &m_timeline;
    Scheduler &m_scheduler;
    MotionPreference &m_motion;
    SettleKey m_settleKey;
    Date m_settlesAt;
    bool m_doneSettled = false;
    PixelSequence m_sequence;
    Task m_settling;
    std::optional<Task> m_beat; ///< while the mascot moves
};

} // namespace morvane
