#include "Presentation/Panel/SessionRow.h"

#include "Core/Ground/BoundedText.h"
#include "Core/Sessions/SessionStore.h"
#include "Presentation/Mascot/PixelAnimator.h"
#include "Presentation/Overlay/PanelContext.h"
#include "Presentation/Panel/ApprovalStrip.h"
#include "Presentation/Panel/ExternalStrip.h"
#include "Presentation/Panel/QuestionStrip.h"
#include "Presentation/Panel/SessionMetaLine.h"
#include "Presentation/Panel/SessionSubtitle.h"
#include "Presentation/Panel/SubagentList.h"
#include "Presentation/Style/Colors.h"
#include "Presentation/Style/TextLabel.h"
#include "Presentation/Style/Typography.h"

#include <QHBoxLayout>

namespace morvane {

namespace {

constexpr int separatorGap = 3;

} // namespace

SessionRow::SessionRow(const PanelContext &context, QWidget *parent)
    : ListRow(context, {.nameColor = Colors::primaryText, .topMargin = 6}, parent),
      m_mark(
          new PixelAnimator(context.timeline, context.scheduler, context.motion, markPixel, this)),
      m_status(new TextLabel(Typography::text(Typography::secondarySize), Colors::secondaryText, 1,
                             this)),
      m_detail(new TextLabel(Typography::text(Typography::secondarySize), Colors::tertiaryText, 1,
                             this)),
      m_meta(new SessionMetaLine(this)), m_subagents(new SubagentList(this)) {
    addMark(*m_mark);
    auto *subtitle = new QHBoxLayout;
    subtitle->setSpacing(separatorGap);
    subtitle->addWidget(m_status);
    subtitle->addWidget(m_detail, 1);
    column().addLayout(subtitle);
    column().addWidget(m_meta);
    column().addWidget(m_subagents);
    connect(this, &SessionRow::clicked, this, &SessionRow::select);
}

void SessionRow::setSession(const Session &session, Details details) {
    if (m_isFilled && session == m_session && details == m_details) {
        return;
    }
    m_isFilled = true;
    m_session = session;
    m_details = details;
    showMain(details);
    showStrip(details);
}

void SessionRow::outliveEntry() {
    Session ended;
    ended.id = m_session.id;
    ended.cwd = m_session.cwd;
    setSession(context().store.sessions().value(m_session.id, ended), {});
}

void SessionRow::setInputHeightLimit(int limit) {
    m_inputHeightLimit = limit;
    if (auto *prompt = qobject_cast<PromptStrip *>(m_strip)) {
        prompt->setInputHeightLimit(limit);
    }
}

void SessionRow::showMain(Details details) {
    m_mark->setMode({m_session.state}, m_session.stateChangedAt);
    showName(m_session.displayName(), m_session.cwd);
    showAgent(details.testFlag(Detail::showsAgent) ? std::optional(m_session.agent) : std::nullopt);
    const SessionSubtitle subtitle = SessionSubtitle::of(m_session);
    // The separator stays with the status, for the detail may read from right to left.
    const bool hasDetail = !subtitle.detail.isEmpty();
    m_status->setText(hasDetail ? subtitle.status + QStringLiteral(" ·") : subtitle.status);
    m_detail->setText(subtitle.detail);
    m_meta->setSession(m_session);
    m_subagents->setSubagents(m_session.subagents);
    setAccessibleName(name() + QStringLiteral(", ") +
                      BoundedText::of(subtitle.text(), BoundedText::lineLength));
}

void SessionRow::showStrip(Details details) {
    QWidget *const before = m_strip;
    m_strip = stripFor(details.testFlag(Detail::showsShortcuts));
    if (before != nullptr && before != m_strip) {
        retire(*before);
    }
    if (m_strip != nullptr) {
        m_strip->show();
    }
    const auto *prompt = qobject_cast<const PromptStrip *>(m_strip);
    setAccessibleDescription(prompt != nullptr ? prompt->asked() : QString());
}

/// Removes a strip whose prompt is over, since a screen reader also reads hidden widgets. Deletes
/// it later, because its own click may have ended the prompt.
void SessionRow::retire(QWidget &strip) {
    strip.hide();
    strip.deleteLater();
    column().removeWidget(&strip);
}

QWidget *SessionRow::stripFor(bool showsShortcuts) {
    if (m_session.pendingApproval && context().actions.onDecide) {
        ApprovalStrip &strip = approvalStrip();
        strip.setApproval(m_session, name(), showsShortcuts);
        return &strip;
    }
    if (m_session.pendingQuestion && context().actions.onAnswer) {
        QuestionStrip &strip = questionStrip();
        strip.setQuestion(*m_session.pendingQuestion, name(), showsShortcuts);
        return &strip;
    }
    if (m_session.pendingExternalResponse) {
        ExternalStrip &strip = externalStrip();
        strip.setSession(m_session);
        return &strip;
    }
    return nullptr;
}

void SessionRow::select() {
    if (context().actions.onSelect) {
        context().actions.onSelect(m_session);
    }
}

/// Between a change of the store and the row's next update a press can still come in. It would
/// answer a prompt that nobody has seen yet.
bool SessionRow::isUpToDate() const {
    const Session now = context().store.sessions().value(m_session.id);
    return now.pendingApproval == m_session.pendingApproval &&
           now.pendingQuestion == m_session.pendingQuestion;
}

bool SessionRow::hasBeenRead() const {
    const auto *prompt = qobject_cast<const PromptStrip *>(m_strip);
    return prompt != nullptr && m_details.testFlag(Detail::showsShortcuts) && isUpToDate() &&
           prompt->hasBeenRead();
}

// Strips are made on demand: most rows never need one.

ApprovalStrip &SessionRow::approvalStrip() {
    if (auto *shown = qobject_cast<ApprovalStrip *>(m_strip)) {
        return *shown;
    }
    auto *const strip = new ApprovalStrip(context().scheduler, this);
    strip->setInputHeightLimit(m_inputHeightLimit);
    column().addWidget(strip);
    connect(strip, &ApprovalStrip::decided, this, [this](const AgentDecision &decision) {
        if (isUpToDate()) {
            context().actions.onDecide(m_session.id, decision);
        }
    });
    return *strip;
}

QuestionStrip &SessionRow::questionStrip() {
    if (auto *shown = qobject_cast<QuestionStrip *>(m_strip)) {
        return *shown;
    }
    auto *const strip = new QuestionStrip(context().scheduler, this);
    strip->setInputHeightLimit(m_inputHeightLimit);
    column().addWidget(strip);
    connect(strip, &QuestionStrip::answered, this,
            [this](const QString &question, const QString &option) {
                if (isUpToDate()) {
                    context().actions.onAnswer(m_session.id, question, option);
                }
            });
    return *strip;
}

ExternalStrip &SessionRow::externalStrip() {
    if (auto *shown = qobject_cast<ExternalStrip *>(m_strip)) {
        return *shown;
    }
    auto *const strip = new ExternalStrip(this);
    column().addWidget(strip);
    connect(strip, &ExternalStrip::answerRequested, this, &SessionRow::select);
    return *strip;
}

} // namespace morvane

#include "moc_SessionRow.cpp"
