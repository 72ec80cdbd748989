#pragma once

#include "Core/Sessions/PendingQuestion.h"
#include "Presentation/Panel/PromptStrip.h"

#include <optional>

namespace morvane {

class OptionButton;
class TextLabel;

/// Asks the first open question of those that a session waits with.
class QuestionStrip : public PromptStrip {
    Q_OBJECT

public:
    QuestionStrip(Scheduler &scheduler, QWidget *parent);

    /// The name is the session's, by which a screen reader tells one strip from another.
    void setQuestion(const PendingQuestion &pending, const QString &name, bool showsShortcuts);

signals:
    void answered(const QString &question, const QString &option);

private:
    void sayWhatIsAsked();
    void showQuestion(const AgentQuestion &question, bool showsShortcuts);

    std::optional<AgentQuestion> m_question;
    bool m_showsShortcuts = false;
    QString m_pendingID;
    ReadableInput m_rest; ///< of the call that asks
    TextLabel *m_header;
    TextLabel *m_position;
    TextLabel *m_text;
    TextLabel *m_tool; ///< which any answer allows, where that is more than to ask
    QList<OptionButton *> m_buttons;
};

} // namespace morvane
