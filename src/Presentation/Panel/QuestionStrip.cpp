#include "Presentation/Panel/QuestionStrip.h"

#include "Core/Ground/VisibleText.h"
#include "Presentation/Panel/Countdown.h"
#include "Presentation/Panel/InputView.h"
#include "Presentation/Panel/OptionButton.h"
#include "Presentation/Style/Colors.h"
#include "Presentation/Style/Typography.h"

#include <QHBoxLayout>

#include <algorithm>

namespace morvane {

QuestionStrip::QuestionStrip(Scheduler &scheduler, QWidget *parent)
    : PromptStrip(scheduler, parent),
      m_header(new TextLabel(Typography::text(Typography::secondarySize, QFont::DemiBold),
                             Colors::questionAccent, 1, this)),
      m_position(new TextLabel(Typography::text(Typography::secondarySize), Colors::secondaryText,
                               1, this)),
      m_text(new TextLabel(Typography::text(Typography::bodySize), Colors::primaryText, 0, this)),
      m_tool(new TextLabel(Typography::text(Typography::secondarySize), Colors::approvalAccent, 0,
                           this)) {
    auto *head = new QHBoxLayout;
    head->setSpacing(6);
    head->addWidget(m_header);
    head->addWidget(m_position);
    head->addStretch();
    head->addWidget(&countdown());
    countdown().raise();
    column().addLayout(head);
    add(*m_text);
    add(*m_tool);
    add(input());
    add(choices());
    auto *options = new QVBoxLayout(&choices());
    options->setContentsMargins(0, 3, 0, 0);
    options->setSpacing(5);
}

void QuestionStrip::setQuestion(const PendingQuestion &pending, const QString &name,
                                bool showsShortcuts) {
    const qsizetype position = std::max<qsizetype>(0, pending.firstUnanswered());
    if (position >= pending.questions.size()) {
        return;
    }
    const AgentQuestion &question = pending.questions[position];
    const QString header = question.header.value_or(QString());
    m_header->setText(VisibleText::look(header).isEmpty() ? tr("Choose")
                                                          : VisibleText::paragraph(header));
    m_position->setText(tr("%1 of %2").arg(position + 1).arg(pending.questions.size()));
    m_text->setText(VisibleText::paragraph(question.question));
    const bool hasInput = !pending.input.lines.isEmpty();
    const QString tool = VisibleText::name(pending.toolName);
    m_tool->setText(
        pending.input.isCut
            ? tr("Any answer also lets %1 run with this, the end of which is missing:").arg(tool)
        : hasInput ? tr("Any answer also lets %1 run with:").arg(tool)
                   : tr("Any answer also lets %1 run.").arg(tool));
    m_tool->setVisible(hasInput || !pending.onlyAsks);
    input().setLines(pending.input.lines);
    input().setVisible(hasInput);
    countdown().setExpiresAt(pending.expiresAt);
    const bool isSame = m_question == question && m_pendingID == pending.id &&
                        m_rest == pending.input && m_showsShortcuts == showsShortcuts;
    if (!isSame) {
        m_pendingID = pending.id;
        m_rest = pending.input;
        sayWhatIsAsked();
        showQuestion(question, showsShortcuts);
        readAnew();
    }
    for (OptionButton *button : std::as_const(m_buttons)) {
        button->setAccessibleName(tr("%1 in %2").arg(button->spokenLabel(), name));
    }
}

void QuestionStrip::sayWhatIsAsked() {
    QStringList asked{m_text->text()};
    if (!m_tool->isHidden()) {
        asked << m_tool->text() << InputView::spoken(m_rest.lines);
    }
    setAsked(asked.join(u'\n').trimmed());
}

void QuestionStrip::showQuestion(const AgentQuestion &question, bool showsShortcuts) {
    m_question = question;
    m_showsShortcuts = showsShortcuts;
    for (OptionButton *button : std::as_const(m_buttons)) {
        // The click that has brought the next question may be this button's own.
        button->hide();
        button->deleteLater();
    }
    m_buttons.clear();
    int digit = 1;
    for (const AgentOption &option : question.options) {
        auto *button =
            new OptionButton(option, Colors::questionAccent,
                             showsShortcuts ? std::optional(digit) : std::nullopt, &choices());
        connect(button, &OptionButton::clicked, this,
                [this, text = question.question, label = option.label] {
                    if (hasBeenRead()) {
                        emit answered(text, label);
                    }
                });
        describe(*button, button->accessibleDescription());
        choices().layout()->addWidget(button);
        button->show();
        m_buttons.append(button);
        ++digit;
    }
}

} // namespace morvane

#include "moc_QuestionStrip.cpp"
