#include "Presentation/Panel/ExternalStrip.h"

#include "Core/Ground/BoundedText.h"
#include "Core/Sessions/Session.h"
#include "Presentation/Panel/DecideButton.h"
#include "Presentation/Style/Colors.h"
#include "Presentation/Style/HelpText.h"
#include "Presentation/Style/TextLabel.h"
#include "Presentation/Style/Typography.h"

#include <QVBoxLayout>

namespace morvane {

namespace {

constexpr int mostLines = 100; ///< the list around it scrolls

} // namespace

ExternalStrip::ExternalStrip(QWidget *parent)
    : QWidget(parent), m_explanation(new TextLabel(Typography::text(Typography::secondarySize),
                                                   Colors::secondaryText, 0, this)),
      m_content(new TextLabel(Typography::text(Typography::secondarySize), Colors::white(0.78),
                              mostLines, this)),
      m_answer(new DecideButton({}, Colors::questionAccent, this)) {
    auto *heading = new TextLabel(Typography::text(Typography::bodySize, QFont::DemiBold),
                                  Colors::questionAccent, 1, this);
    heading->setText(tr("Your answer is needed"));
    m_answer->setTrailingImage(SystemImage::arrowUpForward);
    connect(m_answer, &DecideButton::clicked, this, &ExternalStrip::answerRequested);
    auto *strip = new QVBoxLayout(this);
    strip->setContentsMargins(0, 8, 0, 2);
    strip->setSpacing(5);
    strip->addWidget(heading);
    strip->addWidget(m_explanation);
    strip->addWidget(m_content);
    strip->addSpacing(3);
    strip->addWidget(m_answer, 0, Qt::AlignLeft);
}

void ExternalStrip::setSession(const Session &session) {
    const QString host = session.hostAppName.value_or(tr("the terminal"));
    m_explanation->setText(tr("Review the prompt in %1. It may require a choice, text, "
                              "confirmation, or sensitive input that Morvane cannot safely send.")
                               .arg(host));
    m_content->setText(contentOf(*session.pendingExternalResponse));
    m_content->setVisible(!m_content->text().isEmpty());
    m_answer->setTitle(tr("Answer in %1").arg(host));
    m_answer->setAccessibleName(
        tr("Answer in %1 for %2")
            .arg(host, BoundedText::of(session.displayName(), BoundedText::lineLength)));
    setHelpText(*m_answer, tr("Open the session and answer using %1's native controls").arg(host));
}

QString ExternalStrip::contentOf(const PendingExternalResponse &pending) {
    if (pending.questions.isEmpty()) {
        return pending.fallbackMessage.value_or(QString());
    }
    QStringList blocks;
    for (qsizetype index = 0; index < pending.questions.size(); ++index) {
        const AgentQuestion &question = pending.questions[index];
        QStringList lines{tr("Question %1 of %2").arg(index + 1).arg(pending.questions.size()),
                          question.question};
        for (const AgentOption &option : question.options) {
            lines.append(QStringLiteral("  •  ") + option.label);
        }
        blocks.append(lines.join(u'\n'));
    }
    return blocks.join(QStringLiteral("\n\n"));
}

} // namespace morvane

#include "moc_ExternalStrip.cpp"
