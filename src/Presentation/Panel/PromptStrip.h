#pragma once

#include <QString>
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

    /// What is asked, as a screen reader says it: of a long text its beginning, and that it is only
    /// that.
    const QString &asked() const { return m_asked; }

    /// How high the view of what the call is given may become, in points.
    void setInputHeightLimit(int limit);

protected:
    PromptStrip(Scheduler &scheduler, QWidget *parent);

    /// The parts below are the strip's already; where they stand in it is the heir's to say. What
    /// is added comes below the rest, for screen readers too.
    void add(QWidget &part, Qt::Alignment alignment = {});
    QVBoxLayout &column() const { return *m_column; }
    InputView &input() const { return *m_input; }
    Countdown &countdown() const { return *m_countdown; }
    /// For the buttons; the keyboard leaves it for the row when they can't be pressed any more.
    QWidget &choices() const { return *m_choices; }

    /// What is to be read has changed.
    void readAnew();

    void setAsked(const QString &asked);

    /// What a screen reader says of a choice: what is asked, and then the help. No press is to
    /// count for what nobody has been told.
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
