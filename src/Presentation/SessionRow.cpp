#include "Presentation/SessionRow.h"

#include "Presentation/AgentBadge.h"
#include "Presentation/ApprovalStrip.h"
#include "Presentation/Colors.h"
#include "Presentation/ExternalStrip.h"
#include "Presentation/PanelContext.h"
#include "Presentation/PixelAnimator.h"
#include "Presentation/QuestionStrip.h"
#include "Presentation/SessionMetaLine.h"
#include "Presentation/SessionSubtitle.h"
#include "Presentation/SubagentList.h"
#include "Presentation/TextLabel.h"
#include "Presentation/Typography.h"

#include <QCursor>
#include <QHBoxLayout>
#include <QPainter>

namespace morvane {

namespace {

constexpr double markPixel = 2;
constexpr double cornerRadius = 9;

} // namespace

SessionRow::SessionRow(const PanelContext &context, QWidget *parent)
    : QAbstractButton(parent), m_scheduler(context.scheduler),
      m_mark(new PixelAnimator(context, markPixel, this)),
      m_name(new TextLabel(Typography::text(Typography::nameSize, QFont::DemiBold),
                           Colors::primaryText, 1, this)),
      m_agent(new AgentBadge(this)),
      m_status(new TextLabel(Typography::text(Typography::secondarySize), Colors::secondaryText, 1,
                             this)),
      m_detail(new TextLabel(Typography::text(Typography::secondarySize), Colors::tertiaryText, 1,
                             this)),
      m_meta(new SessionMetaLine(this)), m_subagents(new SubagentList(this)) {
    setFocusPolicy(Qt::NoFocus);
    // A button's own policy is a fixed height, which would cut off text of several lines.
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    setAttribute(Qt::WA_Hover);
    arrange();
    connect(this, &SessionRow::clicked, this, [this] { emit selected(m_session); });
}

void SessionRow::arrange() {
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(10, 8, 10, 8);
    row->setSpacing(11);
    auto *mark = new QVBoxLayout;
    mark->setContentsMargins(0, 1, 0, 0);
    mark->addWidget(m_mark);
    mark->addStretch();
    row->addLayout(mark);

    m_column = new QVBoxLayout;
    m_column->setSpacing(2);
    row->addLayout(m_column, 1);
    auto *title = new QHBoxLayout;
    title->setSpacing(7);
    title->addWidget(m_name);
    title->addWidget(m_agent);
    title->addStretch();
    m_column->addLayout(title);
    auto *subtitle = new QHBoxLayout;
    subtitle->setSpacing(0);
    subtitle->addWidget(m_status);
    subtitle->addWidget(m_detail, 1);
    m_column->addLayout(subtitle);
    m_column->addWidget(m_meta);
    m_column->addWidget(m_subagents);
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

void SessionRow::showMain(Details details) {
    m_mark->setMode({m_session.state}, m_session.stateChangedAt);
    m_name->setText(m_session.displayName());
    m_agent->setAgent(details.testFlag(Detail::showsAgent) ? std::optional(m_session.agent)
                                                           : std::nullopt);
    const SessionSubtitle subtitle = SessionSubtitle::of(m_session);
    m_status->setText(subtitle.status);
    m_detail->setText(subtitle.text().mid(subtitle.status.size()));
    m_meta->setSession(m_session);
    m_subagents->setSubagents(m_session.subagents);
    setAccessibleName(m_session.displayName() + QStringLiteral(", ") + subtitle.text());
}

void SessionRow::showStrip(Details details) {
    QWidget *const before = m_strip;
    const bool showsShortcuts = details.testFlag(Detail::showsShortcuts);
    if (m_session.pendingApproval) {
        approvalStrip().setApproval(*m_session.pendingApproval, showsShortcuts);
        m_strip = m_approval;
    } else if (m_session.pendingQuestion) {
        questionStrip().setQuestion(*m_session.pendingQuestion, showsShortcuts);
        m_strip = m_question;
    } else if (m_session.pendingExternalResponse) {
        externalStrip().setSession(m_session);
        m_strip = m_external;
    } else {
        m_strip = nullptr;
    }
    if (before != nullptr && before != m_strip) {
        before->hide();
    }
    if (m_strip != nullptr) {
        m_strip->show();
    }
}

// A strip is made when it is first called for: most rows never need one.

ApprovalStrip &SessionRow::approvalStrip() {
    if (m_approval == nullptr) {
        m_approval = new ApprovalStrip(m_scheduler, this);
        m_column->addWidget(m_approval);
        connect(m_approval, &ApprovalStrip::decided, this,
                [this](const AgentDecision &decision) { emit decided(m_session.id, decision); });
    }
    return *m_approval;
}

QuestionStrip &SessionRow::questionStrip() {
    if (m_question == nullptr) {
        m_question = new QuestionStrip(m_scheduler, this);
        m_column->addWidget(m_question);
        connect(m_question, &QuestionStrip::answered, this,
                [this](const QString &question, const QString &option) {
                    emit answered(m_session.id, question, option);
                });
    }
    return *m_question;
}

ExternalStrip &SessionRow::externalStrip() {
    if (m_external == nullptr) {
        m_external = new ExternalStrip(this);
        m_column->addWidget(m_external);
        connect(m_external, &ExternalStrip::answerRequested, this,
                [this] { emit selected(m_session); });
    }
    return *m_external;
}

bool SessionRow::hitButton(const QPoint &position) const {
    // A press that just misses a button of the strip must not take the person to the terminal.
    const bool isInStrip = m_strip != nullptr && position.y() >= m_strip->y();
    return !isInStrip && QAbstractButton::hitButton(position);
}

void SessionRow::moveEvent(QMoveEvent *event) {
    QAbstractButton::moveEvent(event);
    if (!underMouse()) {
        return;
    }
    // Qt looks for the pointer when that moves, not when a row moves away from under it.
    const QPoint pointer = QCursor::pos();
    QList<QAbstractButton *> buttons = findChildren<QAbstractButton *>();
    buttons.append(this);
    for (QAbstractButton *button : std::as_const(buttons)) {
        button->setAttribute(Qt::WA_UnderMouse,
                             button->rect().contains(button->mapFromGlobal(pointer)));
        button->update();
    }
}

void SessionRow::paintEvent(QPaintEvent *) {
    if (!underMouse()) {
        return;
    }
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(isDown() ? Colors::rowPressed : Colors::rowHover);
    painter.drawRoundedRect(rect(), cornerRadius, cornerRadius);
}

} // namespace morvane
