#include "Presentation/CompletedRow.h"

#include "Core/TimeFormat.h"
#include "Presentation/AgentBadge.h"
#include "Presentation/Colors.h"
#include "Presentation/PixelFrameView.h"
#include "Presentation/PixelSequence.h"
#include "Presentation/TextLabel.h"
#include "Presentation/Typography.h"

#include <QHBoxLayout>

namespace morvane {

namespace {

constexpr double markPixel = 2;

QString subtitleOf(const CompletedRecord &record, Date now) {
    QString text = record.failed ? CompletedRow::tr("failed") : CompletedRow::tr("done");
    text += QLatin1Char(' ') + TimeFormat::ago(record.finishedAt, now);
    const auto &detail = record.summary ? record.summary : record.lastPrompt;
    return detail ? text + QStringLiteral(" · ") + *detail : text;
}

} // namespace

CompletedRow::CompletedRow(QWidget *parent)
    : QWidget(parent), m_mark(new PixelFrameView(markPixel, this)),
      m_name(new TextLabel(Typography::text(Typography::nameSize, QFont::DemiBold),
                           Colors::secondaryText, 1, this)),
      m_agent(new AgentBadge(this)),
      m_subtitle(new TextLabel(Typography::text(Typography::secondarySize), Colors::tertiaryText, 1,
                               this)) {
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(10, 6, 10, 6);
    row->setSpacing(11);
    row->addWidget(m_mark, 0, Qt::AlignTop);
    auto *column = new QVBoxLayout;
    column->setSpacing(2);
    row->addLayout(column, 1);
    auto *title = new QHBoxLayout;
    title->setSpacing(7);
    title->addWidget(m_name);
    title->addWidget(m_agent);
    title->addStretch();
    column->addLayout(title);
    column->addWidget(m_subtitle);
}

void CompletedRow::setRecord(const CompletedRecord &record, Date now, bool showsAgent) {
    const auto mark =
        PixelSequence::atRest(record.failed ? SessionState::failed : SessionState::done);
    m_mark->setFrame(mark.frames.first(), mark.color);
    m_name->setText(record.name);
    const AgentKind agent = record.agent.value_or(AgentKind::claude);
    m_agent->setAgent(showsAgent ? std::optional(agent) : std::nullopt);
    m_subtitle->setText(subtitleOf(record, now));
    setAccessibleName(record.name + QStringLiteral(", ") + m_subtitle->text());
}

} // namespace morvane
