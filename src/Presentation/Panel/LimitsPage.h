#pragma once

#include "Presentation/Panel/UsageBar.h"

#include <QList>

class QVBoxLayout;

namespace morvane {

class TextLabel;

/// The limits of one agent: a bar for each, and a note below them; or a text that there are none.
class LimitsPage : public QWidget {
    Q_OBJECT

public:
    /// Takes ownership of the note.
    LimitsPage(bool showsAlertMarkers, QWidget &note, QWidget *parent);

    void setLimits(const QList<UsageLimit> &limits, Date now);

    /// Shows that there are no figures, and why if that is known.
    void setUnavailable(const std::optional<QString> &reason);

    /// The time until one of the texts changes; none while no text has a time in it.
    std::optional<Seconds> untilTextsChange(Date now) const;

private:
    const bool m_showsAlertMarkers;
    QWidget &m_note;
    QVBoxLayout *m_barColumn;
    QList<UsageBar *> m_bars;
    TextLabel *m_unavailable;
};

} // namespace morvane
