#pragma once

#include "Core/Sessions/PendingQuestion.h"

#include <QWidget>

#include <optional>

class QVBoxLayout;

namespace morvane {

class Countdown;
class OptionButton;
class Scheduler;
class TextLabel;

/// Asks the first open question of those that a session waits with.
class QuestionStrip : public QWidget {
    Q_OBJECT

public:
    QuestionStrip(Scheduler &scheduler, QWidget *parent);

    void setQuestion(const PendingQuestion &pending, bool showsShortcuts);

signals:
    void answered(const QString &question, const QString &option);

private:
    void showQuestion(const AgentQuestion &question, bool showsShortcuts);

    std::optional<AgentQuestion> m_question;
    bool m_showsShortcuts = false;
    QString m_pendingID;
    TextLabel *m_header;
    TextLabel *m_position;
    TextLabel *m_text;
    Countdown *m_countdown;
    QVBoxLayout *m_options;
    QList<OptionButton *> m_buttons;
};

} // namespace morvane
