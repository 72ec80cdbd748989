#include "Presentation/Windows/DisplaysSection.h"

#include "Core/Settings/MorvaneSettings.h"

namespace morvane {

DisplaysSection::DisplaysSection(const WindowContext &context, QWidget *parent)
    : FormSection(tr("Displays"), parent) {
    MorvaneSettings &settings = context.settings;
    addPicker(
        tr("Show Mor&vane on"), {tr("All displays"), tr("Built-in only"), tr("External only")},
        [&settings] { return static_cast<int>(settings.displayMode()); },
        [&settings](int index) { settings.setDisplayMode(static_cast<DisplayTargetMode>(index)); });
    addPicker(
        tr("&Capsule position (external)"), {tr("Top center"), tr("Top right")},
        [&settings] { return static_cast<int>(settings.floatingPosition()); },
        [&settings](int index) {
            settings.setFloatingPosition(static_cast<FloatingPosition>(index));
        });
    addToggle(tr("Hide over &fullscreen apps"), settings, &MorvaneSettings::hideOverFullscreen,
              &MorvaneSettings::setHideOverFullscreen);
    addToggle(tr("&Keep capsule always visible"), settings, &MorvaneSettings::showWhenIdle,
              &MorvaneSettings::setShowWhenIdle);
}

} // namespace morvane

#include "moc_DisplaysSection.cpp"
