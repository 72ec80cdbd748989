#pragma once

#include "Core/Usage/Usage.h"

#include <QWidget>

namespace morvane {

/// One limit as it is to be shown.
struct UsageLimit {
    QString label;
    QString scope; ///< what it counts, such as "5h"
    UsageWindow window;
    Date readAt;
};

/// How far one limit is used: its name, when it resets and the percent, above a bar. A screen
/// reader reads it as a whole. Old figures say when they were read; a figure whose window is over
/// is faint, because it doesn't hold any more.
class UsageBar : public QWidget {
    Q_OBJECT

public:
    /// With markers the bar shows where milestones are, and changes its colour there.
    explicit UsageBar(bool showsAlertMarkers, QWidget *parent);

    /// Shows the limit with its texts as of this moment.
    void setLimit(const UsageLimit &limit, Date now);

    /// The time until one of its texts changes.
    Seconds untilTextChanges(Date now) const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    QString times(Date now) const;
    int percent() const;
    QRectF track() const;
    void paintTexts(QPainter &painter) const;
    void paintTrack(QPainter &painter) const;

    const bool m_showsAlertMarkers;
    UsageLimit m_limit;
    QString m_times;
    bool m_isOver = false; ///< the window has been reset since
};

} // namespace morvane
