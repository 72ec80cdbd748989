#include "Presentation/Windows/UsageSection.h"

#include "Core/Hooks/AgentConnections.h"
#include "Core/Settings/MorvaneSettings.h"
#include "Core/Usage/UsageAlerts.h"
#include "Core/Usage/UsagePoller.h"
#include "Presentation/Style/Colors.h"
#include "Presentation/Style/TextLabel.h"
#include "Presentation/Windows/ToggleRow.h"

#include <QHBoxLayout>

namespace morvane {

namespace {

QString stateOf(bool hasFigures, const std::optional<QString> &reason) {
    return reason ? *reason : hasFigures ? UsageSection::tr("ok") : UsageSection::tr("waiting");
}

} // namespace

UsageSection::UsageSection(const WindowContext &context, QWidget *parent)
    : FormSection(tr("Usage limits"), parent), m_settings(context.settings) {
    addToggle(
        tr("Show Claude Code and Codex &usage limits"),
        [&settings = m_settings] { return settings.usageEnabled(); },
        context.program.setUsageEnabled);
    addCaption(
        tr("Claude limits use its OAuth token and Anthropic's usage endpoint. Codex limits "
           "come from the official local Codex app-server, which keeps authentication inside "
           "Codex — Morvane never reads a Codex token. Turn this off and neither provider is "
           "queried; session tracking is unchanged."));
    addDetails(context);
    addBlockedStatusLines(context.connections);
}

void UsageSection::showWhileEnabled(QWidget *row) {
    onRefresh([row, &settings = m_settings] { row->setVisible(settings.usageEnabled()); });
}

void UsageSection::addDetails(const WindowContext &context) {
    ToggleRow *fable = addToggle(tr("Show Fable / model-family &bar (when reported)"), m_settings,
                                 &MorvaneSettings::showFableBar, &MorvaneSettings::setShowFableBar);
    showWhileEnabled(fable->parentWidget());
    addMilestones();
    addSources(context.usage);
    showWhileEnabled(addCaption(
        tr("The %1 capsule milestones and chimes remain Claude-only. Codex limits appear in the "
           "expanded panel and never make an idle or working-only capsule appear.")
            .arg(UsageAlerts::percents(QStringLiteral(" / "), QStringLiteral("%")))));
    addKeychain(context);
}

void UsageSection::addMilestones() {
    showWhileEnabled(addCaption(
        tr("Each milestone appears for six seconds in Morvane's existing notch or "
           "external capsule, with one custom chime when sounds are enabled. It appears "
           "only while a Claude Code turn is working — never for idle Claude sessions or "
           "another agent such as Codex.")));
    TextLabel *thresholds =
        makeText(UsageAlerts::percents(QStringLiteral(" · "), QStringLiteral("%")));
    showWhileEnabled(
        addRow(SystemImage::bellFill, Colors::secondaryText, thresholds)->parentWidget());
}

void UsageSection::addSources(const UsagePoller &usage) {
    TextLabel *claude = makeText({});
    TextLabel *codex = makeText({});
    for (const auto &[name, state] : {std::pair(tr("Claude"), claude), {tr("Codex"), codex}}) {
        QHBoxLayout *row = addRow(name);
        row->addWidget(state);
        showWhileEnabled(row->parentWidget());
    }
    onRefresh([&usage, claude, codex] {
        claude->setText(stateOf(usage.usage().has_value(), usage.unavailableReason()));
        codex->setText(stateOf(usage.codexUsage().has_value(), usage.codexUnavailableReason()));
    });
}

void UsageSection::addKeychain(const WindowContext &context) {
    QHBoxLayout *row = addRow(tr("Keychain"));
    row->addWidget(makeText(tr("paused — it asked for your password")));
    row->addWidget(makeButton(tr("Try a&gain"), context.program.retryKeychainAccess));
    onRefresh([line = row->parentWidget(), &usage = context.usage, &settings = m_settings] {
        line->setVisible(settings.usageEnabled() && usage.keychainBlocked());
    });
}

void UsageSection::addBlockedStatusLines(const AgentConnections &connections) {
    TextLabel *caption = addCaption();
    onRefresh([caption, &connections, &settings = m_settings] {
        QStringList lines;
        for (const AgentKind kind : connections.statusLineBlockedAgents()) {
            lines.append(tr("Live usage updates are off — %1's status line is set by another tool. "
                            "Morvane polls every few minutes instead.")
                             .arg(displayName(kind)));
        }
        caption->setText(lines.join(u'\n'));
        // With the limits off nothing is polled.
        caption->setVisible(settings.usageEnabled() && !lines.isEmpty());
    });
}

} // namespace morvane

#include "moc_UsageSection.cpp"
