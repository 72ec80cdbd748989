#pragma once

#include "Presentation/Windows/FormSection.h"
#include "Presentation/Windows/WindowContext.h"

namespace morvane {

class KeyField;

/// "Behaviour": how long sessions stay, where the program itself is found, and by which key.
class BehaviourSection : public FormSection {
    Q_OBJECT

public:
    BehaviourSection(const WindowContext &context, QWidget *parent);

private:
    void addAutoClear(MorvaneSettings &settings);
    void addPanelKey(const WindowContext &context);
    void addDesktopsKey(const std::function<HotKeys::State()> &state);
    void addKeyField(MorvaneSettings &settings);

    KeyField *m_panelKey = nullptr; ///< none where the desktop says which key it is
};

} // namespace morvane
