#pragma once

#include "Presentation/Windows/FormSection.h"
#include "Presentation/Windows/WindowContext.h"

namespace morvane {

class KeyField;

/// "Behaviour": how long sessions stay, which key opens the panel, the start at login and the icon.
class BehaviourSection : public FormSection {
    Q_OBJECT

public:
    BehaviourSection(const WindowContext &context, QWidget *parent);

private:
    void addAutoClear(MorvaneSettings &settings);
    void addPanelKey(const WindowContext &context);
    void addDesktopsKey(const std::function<HotKeys::State()> &state);
    void addKeyField(MorvaneSettings &settings);

    KeyField *m_panelKey = nullptr; ///< null where the desktop assigns the key
};

} // namespace morvane
