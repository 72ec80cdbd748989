#pragma once

#include <QString>
#include <QWidget>

class QVBoxLayout;

namespace morvane {

class Countdown;
class InputView;
class ReadingTime;
class Scheduler;

/// The base of the strips in which a person answers a waiting hook: the call's input, the time
/// left, and choices that can be pressed once all of it has been shown long enough to be read.
class PromptStrip : public QWidget {
    Q_OBJECT

public:
    /// Whether it has been shown long enough to be read.
    bool hasBeenRead() const;

    /// The prompt as a screen reader says it: of a long text only the beginning, and a note that
    /// there is more.
    const QString &asked() const { return m_asked; }

    /// The most height that the view of the call's input takes, in points.
    void setInputHeightLimit(int limit);

protected:
    PromptStrip(Scheduler &scheduler, QWidget *parent);

    /// The parts below already belong to the strip; a subclass decides where they go. An added part
    /// comes below the rest, for screen readers too.
    void add(QWidget &part, Qt::Alignment alignment = {});
    QVBoxLayout &column() const { return *m_column; }
    InputView &input() const { return *m_input; }
    Countdown &countdown() const { return *m_countdown; }
    /// Holds the buttons; when they can't be pressed any more, the focus moves from it to the row.
    QWidget &choices() const { return *m_choices; }

    /// Restarts the reading time, because the content has changed.
    void readAnew();

    void setAsked(const QString &asked);

    /// Describes a choice to a screen reader: what is asked, and then the help, so that nobody
    /// presses it without having been told.
    void describe(QWidget &choice, const QString &help) const;

private:
    QVBoxLayout *m_column;
    InputView *m_input;
    Countdown *m_countdown;
    QWidget *m_choices;
    ReadingTime *m_reading;
    QString m_asked;
};

} // namespace morvane
