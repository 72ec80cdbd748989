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
/// when it loses the focus, so that nothing is sent unless the person sends it. Afterwards the
/// strip says whether the text was sent. A text that wasn't sent is offered again on every display
/// while the session exists, unless the person has discarded it.
class ReplyStrip : public QWidget {
    Q_OBJECT

public:
    /// The context outlives the strip.
    ReplyStrip(const PanelContext &context, QWidget *parent);

    /// Whether the session is one that can be replied to.
    static bool isOffered(const PanelContext &context, const Session &session);

    /// When the session has finished once more, the strip drops what it said about an earlier
    /// reply.
    void setSession(const Session &session);

    bool isReplying() const { return !m_field.isNull(); }

    /// Whether text would disappear with the strip: one that is being typed, or hasn't gone out.
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
