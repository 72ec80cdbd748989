#include "Presentation/Windows/BehaviourSection.h"

#include "Core/Settings/MorvaneSettings.h"
#include "Core/Settings/PanelKey.h"
#include "Presentation/Style/PlatformWords.h"
#include "Presentation/Style/TextLabel.h"
#include "Presentation/Style/Typography.h"
#include "Presentation/Windows/InForm.h"
#include "Presentation/Windows/KeyField.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QSignalBlocker>

#include <algorithm>

namespace morvane {

namespace {

constexpr int mostMinutes = 120;

} // namespace

BehaviourSection::BehaviourSection(const WindowContext &context, QWidget *parent)
    : FormSection(tr("Behaviour"), parent) {
    MorvaneSettings &settings = context.settings;
    addAutoClear(settings);
    addPanelKey(context);
    addToggle(tr("&Launch at login"), context.program.launchAtLogin,
              context.program.setLaunchAtLogin);
    addToggle(PlatformWords::showIcon(), settings, &MorvaneSettings::showMenuBarIcon,
              &MorvaneSettings::setShowMenuBarIcon);
    TextLabel *hidden = addCaption();
    onRefresh([hidden, &settings, program = context.program] {
        hidden->setText(PlatformWords::iconIsHidden(PlatformWords::panelKey(
            settings.panelKey(), program.panelKeyState(), program.desktopChoosesKeys())));
        hidden->setVisible(!settings.showMenuBarIcon());
    });
}

/// The unit is part of the field, so that the row reads as one sentence.
void BehaviourSection::addAutoClear(MorvaneSettings &settings) {
    auto *label = new QLabel(tr("Auto-clear finished &sessions after"), this);
    label->setFont(Typography::text(Typography::nameSize));
    auto *minutes = new Stepper(this);
    minutes->setRange(1, mostMinutes);
    minutes->setKeyboardTracking(false);
    minutes->setSuffix(tr(" min"));
    minutes->setAccessibleName(tr("Minutes after which finished sessions are cleared"));
    label->setBuddy(minutes);
    addRow(label)->addWidget(minutes);
    connect(minutes, &QSpinBox::valueChanged, this, [&settings](int value) {
        if (value != settings.autoClearMinutes()) {
            settings.setAutoClearMinutes(value);
        }
    });
    onRefresh([minutes, &settings] {
        const QSignalBlocker blocker(minutes);
        const int stored = settings.autoClearMinutes();
        const int least = std::min(1, stored);
        const int most = std::max(mostMinutes, stored);
        // Setting the same range again would stop the auto-repeat of an arrow that is held.
        if (least != minutes->minimum() || most != minutes->maximum()) {
            minutes->setRange(least, most);
        }
        // Setting the same value again would discard what is being typed.
        if (stored != minutes->value()) {
            minutes->setValue(stored);
        }
    });
}

void BehaviourSection::addPanelKey(const WindowContext &context) {
    if (context.program.desktopChoosesKeys()) {
        addDesktopsKey(context.program.panelKeyState);
    } else {
        addKeyField(context.settings);
    }
    TextLabel *caption = addCaption();
    onRefresh([this, caption, &settings = context.settings, state = context.program.panelKeyState] {
        const QString problem = PlatformWords::hotKeyProblem(settings.panelKey(), state());
        const QString refusal = m_panelKey ? m_panelKey->refusal() : QString();
        caption->setText(refusal.isEmpty() ? problem : refusal);
        caption->setVisible(!caption->text().isEmpty());
    });
}

void BehaviourSection::addDesktopsKey(const std::function<HotKeys::State()> &state) {
    TextLabel *whose = makeText({});
    addRow(tr("Key that opens the panel"))->addWidget(whose);
    TextLabel *which = addCaption(tr("The desktop's own keyboard settings say which key that is."));
    onRefresh([whose, which, state] {
        const bool isGiven = state() != HotKeys::State::unavailable;
        whose->setText(isGiven ? tr("set by the desktop") : tr("none"));
        which->setVisible(isGiven);
    });
}

void BehaviourSection::addKeyField(MorvaneSettings &settings) {
    auto *label = new QLabel(tr("Ke&y that opens the panel"), this);
    label->setFont(Typography::text(Typography::nameSize));
    FormButton *usual = makeButton(tr("Use %1").arg(PlatformWords::hotKey(PanelKey::usual())),
                                   [&settings] { settings.setPanelKey(PanelKey::usual()); });
    m_panelKey = new KeyField(this);
    label->setBuddy(m_panelKey);
    QHBoxLayout *row = addRow(label);
    row->addWidget(usual);
    row->addWidget(m_panelKey);
    connect(m_panelKey, &KeyField::chosen, this,
            [&settings](const HotKey &key) { settings.setPanelKey(key); });
    connect(m_panelKey, &KeyField::refusalChanged, this, &FormSection::refresh);
    onRefresh([usual, field = m_panelKey, &settings] {
        field->setKey(settings.panelKey());
        usual->setVisible(settings.panelKey() != PanelKey::usual());
    });
}

} // namespace morvane

#include "moc_BehaviourSection.cpp"
