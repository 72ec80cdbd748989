#include "Presentation/Panel/ApprovalStrip.h"

#include "Presentation/Panel/Countdown.h"
#include "Presentation/Panel/DecideButton.h"
#include "Presentation/Style/Colors.h"
#include "Presentation/Style/HelpText.h"
#include "Presentation/Style/Typography.h"

#include <QHBoxLayout>

#include <utility>

namespace morvane {

namespace {

constexpr int detailLines = 4;

/// How a choice is put to a person.
struct Wording {
    QString title;
    QColor tint;
    QString help;
};

Wording wordingOf(const AgentDecision &choice, const QString &toolName) {
    if (choice.kind == AgentDecision::Kind::deny) {
        return {ApprovalStrip::tr("Deny"), Colors::denyAccent,
                ApprovalStrip::tr("Refuse this call. The agent is told no and carries on.")};
    }
    if (choice.kind == AgentDecision::Kind::allow) {
        return {ApprovalStrip::tr("Allow"), Colors::approvalAccent,
                ApprovalStrip::tr("Approve this one call.")};
    }
    return {ApprovalStrip::tr("Always"), Colors::white(0.7),
            ApprovalStrip::tr("Approve every %1 call for the rest of this session.").arg(toolName)};
}

} // namespace

ApprovalStrip::ApprovalStrip(Scheduler &scheduler, QWidget *parent)
    : QWidget(parent),
      m_title(new TextLabel(Typography::text(Typography::bodySize, QFont::DemiBold),
                            Colors::approvalAccent, 2, this)),
      m_detail(new TextLabel(Typography::code(Typography::secondarySize), Colors::white(0.78),
                             detailLines, this)),
      m_countdown(new Countdown(scheduler, this)) {
    auto *strip = new QVBoxLayout(this);
    strip->setContentsMargins(0, 8, 0, 2);
    strip->setSpacing(5);
    strip->addWidget(m_title);
    strip->addWidget(m_detail);
    auto *buttons = new QHBoxLayout;
    buttons->setContentsMargins(0, 3, 0, 0);
    buttons->setSpacing(7);
    for (const AgentDecision &choice : PendingApproval::allChoices()) {
        m_buttons.append(addButton(choice));
        buttons->addWidget(m_buttons.last());
    }
    buttons->addStretch();
    buttons->addWidget(m_countdown);
    strip->addLayout(buttons);
}

void ApprovalStrip::setApproval(const PendingApproval &approval, bool showsShortcuts) {
    if (approval.id != m_approvalID) {
        m_approvalID = approval.id;
        // A press that began on the call before this one must not decide this one.
        for (DecideButton *button : std::as_const(m_buttons)) {
            button->setDown(false);
        }
    }
    m_title->setText(tr("wants to run %1").arg(approval.toolName));
    m_detail->setText(approval.detail.value_or(QString()));
    m_detail->setVisible(!m_detail->text().isEmpty());
    m_countdown->setExpiresAt(approval.expiresAt);
    const auto all = PendingApproval::allChoices();
    const auto offered = approval.choices();
    for (qsizetype position = 0; position < m_buttons.size(); ++position) {
        DecideButton &button = *m_buttons[position];
        button.setVisible(position < offered.size());
        setHelpText(button, wordingOf(all[position], approval.toolName).help);
        const int digit = static_cast<int>(position) + 1;
        button.setShortcutDigit(showsShortcuts ? std::optional(digit) : std::nullopt);
    }
}

DecideButton *ApprovalStrip::addButton(const AgentDecision &decision) {
    const Wording wording = wordingOf(decision, QString());
    auto *button = new DecideButton(wording.title, wording.tint, this);
    connect(button, &DecideButton::clicked, this, [this, decision] { emit decided(decision); });
    return button;
}

} // namespace morvane
