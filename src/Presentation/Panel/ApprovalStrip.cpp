#include "Presentation/Panel/ApprovalStrip.h"

#include "Presentation/Panel/Countdown.h"
#include "Presentation/Panel/DecideButton.h"
#include "Presentation/Style/Colors.h"
#include "Presentation/Style/HelpText.h"
#include "Presentation/Style/Typography.h"

#include <QHBoxLayout>

namespace morvane {

namespace {

constexpr int detailLines = 4;

} // namespace

ApprovalStrip::ApprovalStrip(Scheduler &scheduler, QWidget *parent)
    : QWidget(parent),
      m_title(new TextLabel(Typography::text(Typography::bodySize, QFont::DemiBold),
                            Colors::approvalAccent, 2, this)),
      m_detail(new TextLabel(Typography::code(Typography::secondarySize), Colors::white(0.78),
                             detailLines, this)),
      m_countdown(new Countdown(scheduler, this)),
      m_deny(addButton(tr("Deny"), Colors::denyAccent, AgentDecision::deny())),
      m_allow(addButton(tr("Allow"), Colors::approvalAccent, AgentDecision::allow())),
      m_always(addButton(tr("Always"), Colors::white(0.7),
                         AgentDecision::allowRemembering(AgentDecision::Scope::session))) {
    setHelpText(*m_deny, tr("Refuse this call. The agent is told no and carries on."));
    setHelpText(*m_allow, tr("Approve this one call."));

    auto *strip = new QVBoxLayout(this);
    strip->setContentsMargins(0, 8, 0, 2);
    strip->setSpacing(5);
    strip->addWidget(m_title);
    strip->addWidget(m_detail);
    auto *buttons = new QHBoxLayout;
    buttons->setContentsMargins(0, 3, 0, 0);
    buttons->setSpacing(7);
    buttons->addWidget(m_deny);
    buttons->addWidget(m_allow);
    buttons->addWidget(m_always);
    buttons->addStretch();
    buttons->addWidget(m_countdown);
    strip->addLayout(buttons);
}

void ApprovalStrip::setApproval(const PendingApproval &approval, bool showsShortcuts) {
    if (approval.id != m_approvalID) {
        m_approvalID = approval.id;
        // A press that began on the call before this one must not decide this one.
        for (DecideButton *button : {m_deny, m_allow, m_always}) {
            button->setDown(false);
        }
    }
    m_title->setText(tr("wants to run %1").arg(approval.toolName));
    m_detail->setText(approval.detail.value_or(QString()));
    m_detail->setVisible(!m_detail->text().isEmpty());
    m_countdown->setExpiresAt(approval.expiresAt);
    m_always->setVisible(approval.allowsRemembering);
    setHelpText(*m_always,
                tr("Approve every %1 call for the rest of this session.").arg(approval.toolName));
    int digit = 1;
    for (DecideButton *button : {m_deny, m_allow, m_always}) {
        button->setShortcutDigit(showsShortcuts ? std::optional(digit) : std::nullopt);
        ++digit;
    }
}

DecideButton *ApprovalStrip::addButton(const QString &title, const QColor &tint,
                                       const AgentDecision &decision) {
    auto *button = new DecideButton(title, tint, this);
    connect(button, &DecideButton::clicked, this, [this, decision] { emit decided(decision); });
    return button;
}

} // namespace morvane
