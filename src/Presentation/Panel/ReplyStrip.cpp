#include "Presentation/Panel/ReplyStrip.h"

#include "Presentation/Overlay/InlineNameField.h"
#include "Presentation/Panel/DecideButton.h"
#include "Presentation/Style/Colors.h"
#include "Presentation/Style/Typography.h"

#include <QVBoxLayout>

namespace morvane {

ReplyStrip::ReplyStrip(const PanelContext &context, QWidget *parent)
    : QWidget(parent), m_context(context),
      m_affordance(new DecideButton(tr(" Reply"), Colors::white(0.7), this)) {
    m_affordance->setLeadingImage(SystemImage::arrowTurnUpLeft);
    connect(m_affordance, &DecideButton::clicked, this, &ReplyStrip::openField);
    auto *strip = new QVBoxLayout(this);
    strip->setContentsMargins(0, 8, 0, 2);
    strip->addWidget(m_affordance);
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
    const InlineNameField::Setup setup{
        .initial = {}, .placeholder = tr("Type a follow-up…"), .title = tr("Reply")};
    m_field = new InlineNameField(setup, m_context, this);
    m_field->setFont(Typography::text(Typography::bodySize));
    m_field->setFixedHeight(m_affordance->sizeHint().height());
    connect(m_field, &InlineNameField::commit, this, [this](const QString &text) {
        closeField();
        if (!text.trimmed().isEmpty()) {
            emit replied(text);
        }
    });
    connect(m_field, &InlineNameField::cancel, this, &ReplyStrip::closeField);
    m_affordance->hide();
    layout()->addWidget(m_field);
    m_field->show();
}

void ReplyStrip::closeField() {
    layout()->removeWidget(m_field);
    m_affordance->show();
    m_affordance->setFocus();
}

} // namespace morvane
