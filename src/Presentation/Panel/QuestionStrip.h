#pragma once

#include "Core/Sessions/PendingQuestion.h"
#include "Presentation/Panel/PromptStrip.h"

#include <optional>

namespace morvane {

class OptionButton;
class TextLabel;

/// Asks the first unanswered one of the questions that a session waits with.
class QuestionStrip : public PromptStrip {
    Q_OBJECT

public:
    QuestionStrip(Scheduler &scheduler, QWidget *parent);

    /// `name` is the session's, so that a screen reader tells the strips apart.
    void setQuestion(const PendingQuestion &pending, const QString &name, bool showsShortcuts);

signals:
    void answered(const QString &question, const QString &option);

private:
    void sayWhatIsAsked();
    void showQuestion(const AgentQuestion &question, bool showsShortcuts);

    std::optional<AgentQuestion> m_question;
    bool m_showsShortcuts = false;
    QString m_pendingID;
    ReadableInput m_rest; ///< the call's input besides the questions
    TextLabel *m_header;
    TextLabel *m_position;
    TextLabel *m_text;
    TextLabel *m_tool; ///< names the tool that any answer allows, if it does more than ask
    QList<OptionButton *> m_buttons;
};

} // namespace morvane
