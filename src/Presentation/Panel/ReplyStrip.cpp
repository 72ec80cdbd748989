#include "Presentation/Panel/ReplyStrip.h"

#include "Core/Ground/BoundedText.h"
#include "Presentation/Overlay/InlineNameField.h"
#include "Presentation/Overlay/PanelContext.h"
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
    m_session = session;
    m_affordance->setAccessibleName(
        tr("Reply to %1").arg(BoundedText::of(session.displayName(), BoundedText::lineLength)));
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
    const InlineNameField::Setup setup{.initial = m_unsent,
                                       .placeholder = tr("Type a follow-up…"),
                                       .title = m_affordance->accessibleName()};
    m_field = new InlineNameField(setup, m_context, this);
    m_field->setFont(Typography::text(Typography::bodySize));
    m_field->setFixedHeight(m_affordance->sizeHint().height());
    connect(m_field, &InlineNameField::commit, this, [this](const QString &text) {
        closeField();
        m_unsent.clear();
        if (!text.trimmed().isEmpty()) {
            send(text);
        }
    });
    connect(m_field, &InlineNameField::cancel, this, [this] {
        m_unsent = m_field->typedText().trimmed();
        closeField();
        if (!m_unsent.isEmpty()) {
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

void ReplyStrip::send(const QString &text) {
    m_isSending = true;
    m_context.actions.onReply(m_session, text,
                              [weak = QPointer<ReplyStrip>(this), text](bool isSent) {
                                  if (weak) {
                                      weak->m_isSending = false;
                                      weak->m_unsent = isSent ? QString() : text;
                                      weak->tell(isSent ? tr("sent") : tr("could not be sent"));
                                  }
                              });
}

void ReplyStrip::tell(const QString &outcome) {
    m_outcome->setText(outcome);
    m_outcome->setVisible(!isReplying());
}

} // namespace morvane

#include "moc_ReplyStrip.cpp"
