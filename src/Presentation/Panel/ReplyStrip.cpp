#include "Presentation/Panel/ReplyStrip.h"

#include "Core/Ground/BoundedText.h"
#include "Presentation/Overlay/InlineNameField.h"
#include "Presentation/Overlay/PanelContext.h"
#include "Presentation/Overlay/ReplyDrafts.h"
#include "Presentation/Panel/DecideButton.h"
#include "Presentation/Style/Colors.h"
#include "Presentation/Style/TextLabel.h"
#include "Presentation/Style/Typography.h"

#include <QHBoxLayout>

namespace morvane {

namespace {

constexpr int outcomeGap = 8;

} // namespace

ReplyStrip::ReplyStrip(const PanelContext &context, QWidget *parent)
    : QWidget(parent), m_context(context),
      m_affordance(new DecideButton(tr(" Reply"), Colors::quietAccent, this)),
      m_outcome(new TextLabel(Typography::text(Typography::secondarySize), Colors::tertiaryText, 1,
                              this)) {
    m_affordance->setLeadingImage(SystemImage::arrowTurnUpLeft);
    connect(m_affordance, &DecideButton::clicked, this, &ReplyStrip::openField);
    connect(&context.replyDrafts, &ReplyDrafts::changed, this, [this](const QString &sessionID) {
        if (sessionID == m_session.id) {
            tellOfDraft();
        }
    });
    auto *strip = new QHBoxLayout(this);
    strip->setContentsMargins(0, 8, 0, 2);
    strip->setSpacing(outcomeGap);
    strip->addWidget(m_affordance, 0, Qt::AlignLeft);
    strip->addWidget(m_outcome, 1);
    m_outcome->hide();
}

bool ReplyStrip::isOffered(const PanelContext &context, const Session &session) {
    const PanelActions &actions = context.actions;
    return session.isFinished() && actions.onReply && actions.canReply && actions.canReply(session);
}

void ReplyStrip::setSession(const Session &session) {
    const bool isAnotherEnd =
        session.id != m_session.id || session.stateChangedAt != m_session.stateChangedAt;
    m_session = session;
    m_affordance->setAccessibleName(
        tr("Reply to %1").arg(BoundedText::of(session.displayName(), BoundedText::lineLength)));
    if (isAnotherEnd) {
        tellOfDraft();
    }
}

QString ReplyStrip::draft() const {
    return m_context.replyDrafts.text(m_session.id);
}

bool ReplyStrip::holdsText() const {
    return isReplying() || m_isSending || !draft().isEmpty();
}

void ReplyStrip::abandonReply() {
    if (m_field) {
        m_field->abandon();
    }
}

void ReplyStrip::openField() {
    if (m_field) {
        return;
    }
    const InlineNameField::Setup setup{.initial = draft(),
                                       .placeholder = tr("Type a follow-up…"),
                                       .title = m_affordance->accessibleName()};
    m_field = new InlineNameField(setup, m_context, this);
    m_field->setFont(Typography::text(Typography::bodySize));
    m_field->setFixedHeight(m_affordance->sizeHint().height());
    connect(m_field, &InlineNameField::commit, this, [this](const QString &text) {
        closeField();
        m_context.replyDrafts.drop(m_session.id);
        if (!text.trimmed().isEmpty()) {
            send(text);
        }
    });
    connect(m_field, &InlineNameField::cancel, this, [this] {
        const QString text = m_field->typedText().trimmed();
        closeField();
        if (text.isEmpty()) {
            m_context.replyDrafts.drop(m_session.id);
        } else {
            m_context.replyDrafts.keep(m_session.id, text);
            tell(tr("not sent"));
        }
    });
    m_affordance->hide();
    m_outcome->hide();
    layout()->addWidget(m_field);
    m_field->show();
}

void ReplyStrip::closeField() {
    layout()->removeWidget(m_field);
    m_field.clear();
    m_affordance->show();
    m_affordance->setFocus();
}

/// The outcome may arrive when the strip has gone.
void ReplyStrip::send(const QString &text) {
    m_isSending = true;
    const auto told = [weak = QPointer<ReplyStrip>(this), drafts = QPointer(&m_context.replyDrafts),
                       sessionID = m_session.id, text](bool isSent) {
        if (!isSent && drafts && drafts->text(sessionID).isEmpty()) {
            drafts->keep(sessionID, text);
        }
        if (weak) {
            weak->m_isSending = false;
            weak->tell(isSent ? tr("sent") : tr("could not be sent"));
        }
    };
    m_context.actions.onReply(m_session, text, told);
}

void ReplyStrip::tell(const QString &outcome) {
    m_outcome->setText(outcome);
    m_outcome->setVisible(!isReplying() && !outcome.isEmpty());
}

void ReplyStrip::tellOfDraft() {
    tell(draft().isEmpty() ? QString() : tr("not sent"));
}

} // namespace morvane

#include "moc_ReplyStrip.cpp"
