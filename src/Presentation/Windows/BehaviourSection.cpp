#include "Presentation/Windows/BehaviourSection.h"

#include "Core/Settings/MorvaneSettings.h"
#include "Presentation/Style/PlatformWords.h"
#include "Presentation/Style/TextLabel.h"
#include "Presentation/Style/Typography.h"
#include "Presentation/Windows/Stepper.h"

#include <QHBoxLayout>
#include <QLabel>

namespace morvane {

BehaviourSection::BehaviourSection(const WindowContext &context, QWidget *parent)
    : FormSection(tr("Behaviour"), parent) {
    MorvaneSettings &settings = context.settings;
    addAutoClear(settings);
    addToggle(tr("&Launch at login"), context.program.launchAtLogin,
              context.program.setLaunchAtLogin);
    addToggle(
        PlatformWords::showIcon(), [&settings] { return settings.showMenuBarIcon(); },
        [&settings](bool on) { settings.setShowMenuBarIcon(on); });
    TextLabel *hidden = addCaption(PlatformWords::iconIsHidden());
    onRefresh([hidden, &settings] { hidden->setVisible(!settings.showMenuBarIcon()); });
}

/// The number stands in the field, so that the row reads as one sentence.
void BehaviourSection::addAutoClear(MorvaneSettings &settings) {
    auto *label = new QLabel(tr("Auto-clear finished &sessions after"), this);
    label->setFont(Typography::text(Typography::nameSize));
    auto *minutes = new Stepper(this);
    minutes->setRange(1, 120);
    minutes->setSuffix(tr(" min"));
    minutes->setAccessibleName(tr("Minutes after which finished sessions are cleared"));
    label->setBuddy(minutes);
    addRow(label)->addWidget(minutes);
    connect(minutes, &QSpinBox::valueChanged, this, [&settings](int value) {
        if (value != settings.autoClearMinutes()) {
            settings.setAutoClearMinutes(value);
        }
    });
    onRefresh([minutes, &settings] { minutes->setValue(settings.autoClearMinutes()); });
}

} // namespace morvane
