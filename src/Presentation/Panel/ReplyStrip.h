#pragma once

#include "Core/Sessions/Session.h"

#include <QPointer>
#include <QWidget>

namespace morvane {

class DecideButton;
class InlineNameField;
class TextLabel;
struct PanelContext;

/// Offers to type a line into the terminal of a session that has finished. The field stays open
/// when it loses the focus: nothing is sent but what somebody has sent. Then it says whether that
/// went out. What hasn't been sent is offered again on every display while the session is there,
/// unless somebody has given it up.
class ReplyStrip : public QWidget {
    Q_OBJECT

public:
    /// The context outlives the strip.
    ReplyStrip(const PanelContext &context, QWidget *parent);

    /// Whether the session is one that can be replied to.
    static bool isOffered(const PanelContext &context, const Session &session);

    /// What is told of a reply is over with the end that it was a reply to.
    void setSession(const Session &session);

    bool isReplying() const { return !m_field.isNull(); }

    /// Whether a text would be out of sight with the strip: one that is being typed, or hasn't gone
    /// out.
    bool holdsText() const;

    void abandonReply();

private:
    void openField();
    void closeField();
    void send(const QString &text);
    void tell(const QString &outcome);
    void tellOfDraft();
    QString draft() const;

    const PanelContext &m_context;
    Session m_session;
    DecideButton *m_affordance;
    TextLabel *m_outcome; ///< what has become of the last reply
    QPointer<InlineNameField> m_field;
    bool m_isSending = false;
};

} // namespace morvane
