#pragma once

#include "Core/Sessions/PendingQuestion.h"

#include <QWidget>

#include <optional>

namespace morvane {

class Countdown;
class InputView;
class OptionButton;
class ReadingTime;
class Scheduler;
class TextLabel;

/// Asks the first open question of those that a session waits with. Its options can be chosen once
/// it has stood there long enough to be read.
class QuestionStrip : public QWidget {
    Q_OBJECT

public:
    QuestionStrip(Scheduler &scheduler, QWidget *parent);

    /// The name is the session's, by which a screen reader tells one strip from another.
    void setQuestion(const PendingQuestion &pending, const QString &name, bool showsShortcuts);

    /// Whether it has stood here long enough to be read.
    bool hasBeenRead() const;

    /// How high the view of the rest of the call may become, in points.
    void setInputHeightLimit(int limit);

signals:
    void answered(const QString &question, const QString &option);

private:
    void showQuestion(const AgentQuestion &question, bool showsShortcuts);

    std::optional<AgentQuestion> m_question;
    bool m_showsShortcuts = false;
    QString m_pendingID;
    ReadableInput m_rest; ///< of the call that asks
    TextLabel *m_header;
    TextLabel *m_position;
    TextLabel *m_text;
    TextLabel *m_tool;  ///< which any answer allows, where that is more than to ask
    InputView *m_input; ///< what it is given besides
    Countdown *m_countdown;
    QWidget *m_options;
    QList<OptionButton *> m_buttons;
    ReadingTime *m_reading;
};

} // namespace morvane
