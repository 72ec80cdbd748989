#pragma once

#include <QPointer>
#include <QWidget>

namespace morvane {

class DecideButton;
class InlineNameField;
struct PanelContext;

/// Offers to type a line into the terminal of a session that has finished. The field stays open
/// when it loses the focus: nothing is sent but what somebody has sent.
class ReplyStrip : public QWidget {
    Q_OBJECT

public:
    /// The context outlives the strip.
    ReplyStrip(const PanelContext &context, QWidget *parent);

    bool isReplying() const { return !m_field.isNull(); }
    void abandonReply();

signals:
    /// Never with an empty text.
    void replied(const QString &text);

private:
    void openField();
    void closeField();

    const PanelContext &m_context;
    DecideButton *m_affordance;
    QPointer<InlineNameField> m_field;
};

} // namespace morvane
