#pragma once

#include <QWidget>

namespace morvane {

class DecideButton;
class TextLabel;
struct PendingExternalResponse;
struct Session;

/// Tells of a prompt that has to be answered in the agent's own terminal, and leads there.
class ExternalStrip : public QWidget {
    Q_OBJECT

public:
    explicit ExternalStrip(QWidget *parent);

    /// The session must have a pending external response.
    void setSession(const Session &session);

signals:
    void answerRequested();

private:
    static QString contentOf(const PendingExternalResponse &pending);

    TextLabel *m_explanation;
    TextLabel *m_content;
    DecideButton *m_answer;
};

} // namespace morvane
