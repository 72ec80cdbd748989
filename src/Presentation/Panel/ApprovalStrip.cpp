#include "Presentation/Panel/ApprovalStrip.h"

#include "Core/Ground/VisibleText.h"
#include "Presentation/Panel/Countdown.h"
#include "Presentation/Panel/DecideButton.h"
#include "Presentation/Panel/InputView.h"
#include "Presentation/Style/ActivateLayouts.h"
#include "Presentation/Style/Colors.h"
#include "Presentation/Style/HelpText.h"
#include "Presentation/Style/Typography.h"

#include <QHBoxLayout>

namespace morvane {

namespace {

/// The wording of a choice.
struct Wording {
    QString title;
    QString name; ///< with placeholders for the tool and the session
    QColor tint;
    QString help;
};

Wording wordingOf(const AgentDecision &choice, const QString &toolName) {
    if (choice.kind == AgentDecision::Kind::deny) {
        return {ApprovalStrip::tr("Deny"), ApprovalStrip::tr("Deny %1 in %2"), Colors::denyAccent,
                ApprovalStrip::tr("Refuse this call. The agent is told no and carries on.")};
    }
    if (choice.kind == AgentDecision::Kind::allow) {
        return {ApprovalStrip::tr("Allow"), ApprovalStrip::tr("Allow %1 in %2"),
                Colors::approvalAccent, ApprovalStrip::tr("Approve this one call.")};
    }
    return {ApprovalStrip::tr("Always"), ApprovalStrip::tr("Always allow %1 in %2"),
            Colors::quietAccent,
            ApprovalStrip::tr("Approve every %1 call for the rest of this session.").arg(toolName)};
}

QString wordsFor(const ReadableInput::Rest &rest) {
    if (rest.lines > 0) {
        return rest.lines == 1 ? ApprovalStrip::tr("+ 1 line")
                               : ApprovalStrip::tr("+ %1 lines").arg(rest.lines);
    }
    return rest.characters == 1 ? ApprovalStrip::tr("+ 1 character")
                                : ApprovalStrip::tr("+ %1 characters").arg(rest.characters);
}

} // namespace

ApprovalStrip::ApprovalStrip(Scheduler &scheduler, QWidget *parent)
    : PromptStrip(scheduler, parent),
      m_title(new TextLabel(Typography::text(Typography::bodySize, QFont::DemiBold),
                            Colors::approvalAccent, 0, this)),
      m_more(new DecideButton({}, Colors::quietAccent, this)),
      m_note(new TextLabel(Typography::text(Typography::secondarySize), Colors::secondaryText, 0,
                           this)) {
    add(*m_title);
    add(input());
    add(*m_more, Qt::AlignLeft);
    add(*m_note);
    add(choices());
    makeButtons();
    m_more->setQuiet();
    setHelpText(*m_more, tr("Show the whole of the call."));
    connect(m_more, &DecideButton::clicked, this, [this] {
        m_showsAll = true;
        const bool isByKey = m_more->hasFocus();
        showCall();
        if (isByKey) {
            // The button is hidden now; the keys go to the text that it revealed, to be read.
            (input().focusPolicy() != Qt::NoFocus ? &input() : parentWidget())->setFocus();
        }
        readAnew();
        activateLayoutsAround(*this);
    });
}

void ApprovalStrip::makeButtons() {
    auto *row = new QHBoxLayout(&choices());
    row->setContentsMargins(0, 3, 0, 0);
    row->setSpacing(7);
    for (const AgentDecision &choice : PendingApproval::allChoices()) {
        m_buttons.append(makeButton(choice));
        row->addWidget(m_buttons.last());
    }
    row->addStretch();
    row->addWidget(&countdown());
}

DecideButton *ApprovalStrip::makeButton(const AgentDecision &decision) {
    const Wording wording = wordingOf(decision, QString());
    auto *button = new DecideButton(wording.title, wording.tint, this);
    connect(button, &DecideButton::clicked, this, [this, decision] {
        if (hasBeenRead()) {
            emit decided(decision);
        }
    });
    return button;
}

void ApprovalStrip::setApproval(const Session &session, const QString &name, bool showsShortcuts) {
    if (m_approval != session.pendingApproval) {
        m_approval = session.pendingApproval;
        m_showsAll = false;
        const QString tool = VisibleText::name(m_approval->toolName);
        m_title->setText(session.pendingSubagent.isEmpty()
                             ? tr("wants to run %1").arg(tool)
                             : tr("a subagent wants to run %1").arg(tool));
        showCall();
        countdown().setExpiresAt(m_approval->expiresAt);
        readAnew();
    }
    showChoices(name, showsShortcuts);
}

void ApprovalStrip::showCall() {
    const ReadableInput &given = m_approval->input;
    const QString line = VisibleText::of(m_approval->detail.value_or(QString()));
    const ReadableInput::Rest rest = given.beyond(line);
    const bool isWhole = m_showsAll || line.isEmpty() || rest.isEmpty();
    const QList<ReadableInput::Line> inShort{{ReadableInput::Sign::plain, line}};
    input().setLines(isWhole && !given.lines.isEmpty() ? given.lines : inShort);
    input().setVisible(m_approval->hasDetails());
    m_more->setTitle(wordsFor(rest));
    m_more->setVisible(!isWhole);
    m_note->setText(!m_approval->hasDetails() ? tr("This agent sent no details of the call.")
                    : given.isCut
                        ? tr("The call is longer than can be shown here: its end is missing.")
                        : QString());
    m_note->setVisible(!m_note->text().isEmpty());
    setAsked(m_approval->hasDetails()
                 ? InputView::spoken(given.lines.isEmpty() ? inShort : given.lines)
                 : m_note->text());
}

void ApprovalStrip::showChoices(const QString &name, bool showsShortcuts) {
    const auto all = PendingApproval::allChoices();
    const auto offered = m_approval->choices();
    for (qsizetype position = 0; position < m_buttons.size(); ++position) {
        DecideButton &button = *m_buttons[position];
        button.setVisible(position < offered.size());
        const QString tool = VisibleText::name(m_approval->toolName);
        const Wording wording = wordingOf(all[position], tool);
        button.setAccessibleName(wording.name.arg(tool, name));
        button.setToolTip(helpMarkup(wording.help));
        describe(button, wording.help);
        const int digit = static_cast<int>(position) + 1;
        button.setShortcutDigit(showsShortcuts ? std::optional(digit) : std::nullopt);
    }
}

} // namespace morvane

#include "moc_ApprovalStrip.cpp"
