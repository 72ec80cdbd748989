#pragma once

#include "Presentation/Windows/FormSection.h"
#include "Presentation/Windows/WindowContext.h"

namespace morvane {

/// "Behaviour": how long sessions stay, and where the program itself is found.
class BehaviourSection : public FormSection {
    Q_OBJECT

public:
    BehaviourSection(const WindowContext &context, QWidget *parent);

private:
    void addAutoClear(MorvaneSettings &settings);
};

} // namespace morvane
