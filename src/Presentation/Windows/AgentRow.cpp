#include "Presentation/Windows/AgentRow.h"

#include "Core/Agents/AgentAdapter.h"
#include "Core/Hooks/AgentConnections.h"
#include "Presentation/Mascot/AgentMark.h"
#include "Presentation/Style/Colors.h"
#include "Presentation/Style/SystemImage.h"
#include "Presentation/Style/TextLabel.h"
#include "Presentation/Style/Typography.h"
#include "Presentation/Windows/BetaTag.h"
#include "Presentation/Windows/FormButton.h"
#include "Presentation/Windows/PictureView.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

namespace morvane {

namespace {

constexpr int markSide = 18;
constexpr int signSide = 15;

TextLabel *smallText(const QColor &color, QWidget *parent) {
    return new TextLabel(Typography::text(Typography::secondarySize), color, 0, parent);
}

} // namespace

AgentRow::AgentRow(const AgentAdapter &adapter, AgentConnections &connections, Detail detail,
                   QWidget *parent)
    : QWidget(parent), m_agent(adapter.kind()), m_connections(connections), m_detail(detail),
      m_isInstallable(adapter.isInstallable()) {
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(5);
    auto *line = new QHBoxLayout;
    line->setSpacing(8);
    const auto paintMark = [kind = m_agent](QPainter &painter, const QRectF &frame) {
        AgentMark::paint(painter, kind, frame, AgentMark::tint(kind));
    };
    line->addWidget(new PictureView(markSide, paintMark, this));
    line->addWidget(makeTitle(adapter), 1);
    line->addWidget(makeStatus());
    layout->addLayout(line);
    layout->addWidget(makeIssues());
    refresh();
}

QWidget *AgentRow::makeTitle(const AgentAdapter &adapter) {
    auto *title = new QWidget(this);
    auto *layout = new QVBoxLayout(title);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(2);
    auto *line = new QHBoxLayout;
    line->setSpacing(6);
    auto *name = new TextLabel(Typography::text(Typography::nameSize, QFont::Medium),
                               Colors::primaryText, 1, title);
    name->setText(displayName(m_agent));
    line->addWidget(name);
    if (!adapter.isVerified()) {
        line->addWidget(new BetaTag(title));
    }
    line->addStretch(1);
    layout->addLayout(line);
    if (m_detail == Detail::health) {
        TextLabel *place = smallText(Colors::secondaryText, title);
        place->setText(adapter.integrationDescription());
        layout->addWidget(place);
    }
    return title;
}

QWidget *AgentRow::makeStatus() {
    auto *status = new QWidget(this);
    auto *layout = new QHBoxLayout(status);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(5);
    m_sign =
        m_isInstallable
            ? new PictureView(signSide, SystemImage::checkmarkCircleFill, Colors::connected, status)
            : new PictureView(signSide, SystemImage::circle, Colors::secondaryText, status);
    m_state = smallText(Colors::secondaryText, status);
    m_state->setText(m_isInstallable ? tr("Connected") : tr("unavailable"));
    m_button = new FormButton({}, FormButton::Role::ordinary, status);
    m_button->setVisible(m_isInstallable);
    connect(m_button, &FormButton::clicked, this, [this] { m_connections.toggleHooks(m_agent); });
    layout->addWidget(m_sign);
    layout->addWidget(m_state, 0, Qt::AlignVCenter);
    layout->addSpacing(5);
    layout->addWidget(m_button);
    return status;
}

QWidget *AgentRow::makeIssues() {
    m_issueLine = new QWidget(this);
    auto *layout = new QHBoxLayout(m_issueLine);
    layout->setContentsMargins(markSide + 8, 0, 0, 0);
    layout->addWidget(new PictureView(signSide, SystemImage::exclamationmarkTriangleFill,
                                      Colors::warning, m_issueLine));
    m_issues = smallText(Colors::primaryText, m_issueLine);
    layout->addWidget(m_issues, 1);
    m_repair = new FormButton(tr("Repair"), FormButton::Role::ordinary, m_issueLine);
    m_repair->setAccessibleName(tr("Repair %1").arg(displayName(m_agent)));
    connect(m_repair, &FormButton::clicked, this, [this] { m_connections.repairHooks(m_agent); });
    layout->addWidget(m_repair);
    return m_issueLine;
}

void AgentRow::refresh() {
    const bool isConnected = m_connections.installedAgents().contains(m_agent);
    m_sign->setVisible(isConnected || !m_isInstallable);
    m_state->setVisible(isConnected || !m_isInstallable);
    m_button->setText(isConnected ? tr("Disconnect") : tr("Connect"));
    m_button->setAccessibleName(
        (isConnected ? tr("Disconnect %1") : tr("Connect %1")).arg(displayName(m_agent)));
    showHealth(isConnected);
}

void AgentRow::showHealth(bool isConnected) {
    const Health health = m_connections.health(m_agent);
    const QStringList issues = health.issues();
    const bool hasIssues = !issues.isEmpty();
    const QString obstacle =
        (health.hooksSwitchedOff ? tr("All hooks of %1 are switched off in its settings")
                                 : tr("Before its new hooks run, %1 wants them reviewed: /hooks"))
            .arg(displayName(m_agent));
    const QString unknown = m_connections.whyUnknown(m_agent);
    m_issues->setText(!isConnected ? unknown
                      : hasIssues  ? issues.join(QStringLiteral("; "))
                                   : obstacle);
    const bool canRepair = isConnected && hasIssues;
    // Otherwise the focus would move to the next button, where a second press would disconnect an
    // agent.
    if (!canRepair && m_repair->hasFocus()) {
        parentWidget()->setFocus();
    }
    m_repair->setVisible(canRepair);
    const bool isHindered = hasIssues || health.hooksSwitchedOff || health.awaitsReview;
    m_issueLine->setVisible(isConnected ? m_detail == Detail::health && isHindered
                                        : !unknown.isEmpty());
}

} // namespace morvane

#include "moc_AgentRow.cpp"
