#include "Presentation/Windows/PrivacySection.h"

#include "Core/Settings/MorvaneSettings.h"
#include "Core/Shell/BuildInfo.h"
#include "Core/Shell/UpdateManager.h"

namespace morvane {

PrivacySection::PrivacySection(const WindowContext &context, QWidget *parent)
    : FormSection(tr("Privacy"), parent) {
    MorvaneSettings &settings = context.settings;
    addToggle(tr("C&ount this install"), settings, &MorvaneSettings::installPingEnabled,
              &MorvaneSettings::setInstallPingEnabled);
    addCaption(tr("Once, on first launch, Morvane sends a single “+1” to Morvane's server. It "
                  "carries the version number, with its build, and nothing else: no device "
                  "identifier, no account, nothing that could be joined to you or to any later "
                  "request. Turn this off and nothing is sent."));
    if (!BuildInfo::installCounter()) {
        addCaption(tr("This build has no server to count at, so nothing is sent either way."));
    }
    if (context.updates.isConfigured()) {
        addFooter(tr("The daily update check also reaches Morvane's server, which tells it that a "
                     "copy of this version ran that day. That becomes a daily total through a hash "
                     "that can't be reproduced the next day; your address is never stored. Turn "
                     "the check off under Updates."));
    }
}

} // namespace morvane

#include "moc_PrivacySection.cpp"
