#pragma once

#include <QWidget>

class QVBoxLayout;

namespace morvane {

class Countdown;
class InputView;
class ReadingTime;
class Scheduler;

/// A strip that a person answers a waiting hook in: what the call is given, the time that is left,
/// and choices that can be pressed once all of it has stood there long enough to be read.
class PromptStrip : public QWidget {
    Q_OBJECT

public:
    /// Whether it has stood here long enough to be read.
    bool hasBeenRead() const;

    /// How high the view of what the call is given may become, in points.
    void setInputHeightLimit(int limit);

protected:
    PromptStrip(Scheduler &scheduler, QWidget *parent);

    /// The parts below are the strip's already; where they stand in it is the heir's to say.
    QVBoxLayout &column() const { return *m_column; }
    InputView &input() const { return *m_input; }
    Countdown &countdown() const { return *m_countdown; }
    /// For the buttons; the keyboard leaves it for the row when they can't be pressed any more.
    QWidget &choices() const { return *m_choices; }

    /// What is to be read has changed.
    void readAnew();

private:
    QVBoxLayout *m_column;
    InputView *m_input;
    Countdown *m_countdown;
    QWidget *m_choices;
    ReadingTime *m_reading;
};

} // namespace morvane
