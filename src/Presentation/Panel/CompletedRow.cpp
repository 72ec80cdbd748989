#include "Presentation/Panel/CompletedRow.h"

#include "Core/Ground/BoundedText.h"
#include "Core/Ground/TimeFormat.h"
#include "Platform/Scheduler.h"
#include "Presentation/Mascot/PixelFrameView.h"
#include "Presentation/Mascot/PixelSequence.h"
#include "Presentation/Overlay/PanelContext.h"
#include "Presentation/Panel/ReplyStrip.h"
#include "Presentation/Style/Colors.h"
#include "Presentation/Style/PlatformWords.h"
#include "Presentation/Style/TextLabel.h"
#include "Presentation/Style/Typography.h"

#include <QHBoxLayout>

#include <utility>

namespace morvane {

namespace {

QString subtitleOf(const CompletedRecord &record, Date now) {
    const QString text =
        (record.failed ? CompletedRow::tr("failed %1") : CompletedRow::tr("done %1"))
            .arg(TimeFormat::ago(record.finishedAt, now));
    const QString detail = record.summary.value_or(record.lastPrompt.value_or(QString()));
    return detail.isEmpty() ? text : text + QStringLiteral(" · ") + detail;
}

} // namespace

CompletedRow::CompletedRow(const PanelContext &context, QWidget *parent)
    : ListRow(context, {.nameColor = Colors::secondaryText, .topMargin = 4}, parent),
      m_mark(new PixelFrameView(markPixel, this)), m_digit(new Badge(this)),
      m_subtitle(new TextLabel(Typography::text(Typography::secondarySize), Colors::tertiaryText, 1,
                               this)) {
    addMark(*m_mark);
    column().addWidget(m_subtitle);
    line().addWidget(m_digit, 0, Qt::AlignVCenter);
    connect(this, &CompletedRow::clicked, this, &CompletedRow::reopen);
}

void CompletedRow::setRecord(const CompletedRecord &record, const Details &details) {
    m_record = record;
    const auto mark =
        PixelSequence::atRest(record.failed ? SessionState::failed : SessionState::done);
    m_mark->setFrame(mark.frames.first(), mark.color);
    showName(record.name, record.cwd);
    const AgentKind agent = record.agent.value_or(defaultAgentKind);
    showAgent(details.showsAgent ? std::optional(agent) : std::nullopt);
    showBadge(details.badge);
    m_subtitle->setText(subtitleOf(record, context().scheduler.now()));
    showReply(details.session);
    setAccessibleName(name() + QStringLiteral(", ") +
                      BoundedText::of(m_subtitle->text(), BoundedText::lineLength));
}

void CompletedRow::showBadge(std::optional<int> badge) {
    m_badge = badge;
    m_digit->setContent(badge ? PlatformWords::digitShortcut(*badge + 1) : QString(),
                        Colors::tertiaryText);
}

bool CompletedRow::isEditing() const {
    return ListRow::isEditing() || (m_strip != nullptr && m_strip->isReplying());
}

bool CompletedRow::holdsText() const {
    return ListRow::holdsText() || (m_strip != nullptr && m_strip->holdsText());
}

void CompletedRow::abandonEditing() {
    ListRow::abandonEditing();
    if (m_strip != nullptr) {
        m_strip->abandonReply();
    }
}

void CompletedRow::outliveEntry() {
    showBadge(std::nullopt);
}

/// Checking whether a reply would arrive inspects the running programs, so it happens only when the
/// session has changed. A strip that holds text stays, with the session for which the text was
/// typed.
void CompletedRow::showReply(const std::optional<Session> &session) {
    if (session == m_session) {
        return;
    }
    const bool isOffered = session && ReplyStrip::isOffered(context(), *session);
    const bool isTheSame = isOffered && m_session && session->id == m_session->id;
    if (m_strip != nullptr && m_strip->holdsText() && !isTheSame) {
        return;
    }
    m_session = session;
    if (isOffered) {
        if (m_strip == nullptr) {
            m_strip = new ReplyStrip(context(), this);
            column().addWidget(m_strip);
        }
        m_strip->setSession(*session);
        m_strip->show();
    } else if (ReplyStrip *const before = std::exchange(m_strip, nullptr)) {
        before->hide();
        before->deleteLater();
    }
}

const QWidget *CompletedRow::strip() const {
    return m_strip;
}

bool CompletedRow::hitButton(const QPoint &position) const {
    return context().actions.onReopen && ListRow::hitButton(position);
}

void CompletedRow::reopen() {
    if (context().actions.onReopen) {
        context().actions.onReopen(m_record);
    }
}

} // namespace morvane

#include "moc_CompletedRow.cpp"
