#include "Presentation/Windows/SoundSection.h"

#include "Core/Agents/AgentAdapter.h"
#include "Core/Hooks/AgentConnections.h"
#include "Core/Settings/MorvaneSettings.h"
#include "Presentation/Style/PlatformWords.h"
#include "Presentation/Style/TextLabel.h"
#include "Presentation/Windows/ToggleRow.h"

namespace morvane {

namespace {

QString whatIsSilenced(const std::vector<const AgentAdapter *> &agents) {
    QStringList names;
    for (const AgentAdapter *agent : agents) {
        names.append(displayName(agent->kind()));
    }
    return (agents.size() == 1
                ? SoundSection::tr("Silences the desktop notifications %1 sends so Morvane is the "
                                   "only thing alerting you. Session status still updates — hooks "
                                   "keep firing. Other agents don't send desktop notifications of "
                                   "their own.")
                : SoundSection::tr("Silences the desktop notifications %1 send so Morvane is the "
                                   "only thing alerting you. Session status still updates — hooks "
                                   "keep firing. Other agents don't send desktop notifications of "
                                   "their own."))
        .arg(names.join(QStringLiteral(", ")));
}

} // namespace

SoundSection::SoundSection(const WindowContext &context, QWidget *parent)
    : FormSection(tr("Sound & Notifications"), parent) {
    addSuppression(context.connections);
    addSounds(context.settings);
    addTests(context.program);
}

void SoundSection::addSuppression(AgentConnections &connections) {
    ToggleRow *toggle = addToggle(
        tr("Suppress agents' own &notifications"),
        [&connections] { return connections.notificationsSuppressed(); },
        [&connections](bool on) { connections.setNotificationsSuppressed(on); });
    TextLabel *what = addCaption();
    onRefresh([toggle, what, &connections] {
        const auto agents = connections.mutableAgents();
        toggle->parentWidget()->setVisible(!agents.empty());
        what->setText(agents.empty() ? PlatformWords::noNotificationSwitch()
                                     : whatIsSilenced(agents));
    });
}

void SoundSection::addSounds(MorvaneSettings &settings) {
    addToggle(tr("&Play Morvane sound"), settings, &MorvaneSettings::soundEnabled,
              &MorvaneSettings::setSoundEnabled);
    ToggleRow *needsInput =
        addToggle(tr("…when a session needs &input"), settings, &MorvaneSettings::soundOnNeedsInput,
                  &MorvaneSettings::setSoundOnNeedsInput);
    ToggleRow *done = addToggle(tr("…when a session finis&hes"), settings,
                                &MorvaneSettings::soundOnDone, &MorvaneSettings::setSoundOnDone);
    ToggleRow *limits =
        addToggle(tr("…at Claude limit &milestones"), settings, &MorvaneSettings::soundOnUsageLimit,
                  &MorvaneSettings::setSoundOnUsageLimit);
    for (ToggleRow *toggle : {needsInput, done, limits}) {
        indent(toggle);
        onRefresh(
            [toggle, &settings] { toggle->parentWidget()->setVisible(settings.soundEnabled()); });
    }
}

void SoundSection::addTests(const ProgramActions &program) {
    addButtons({makeButton(tr("&Test sound"), program.testSound),
                makeButton(tr("Test limit chim&e"), program.testLimitChime)});
}

} // namespace morvane

#include "moc_SoundSection.cpp"
