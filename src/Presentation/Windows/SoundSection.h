#pragma once

#include "Presentation/Windows/FormSection.h"
#include "Presentation/Windows/WindowContext.h"

namespace morvane {

/// "Sound & Notifications": what is heard, of us and of the agents themselves.
class SoundSection : public FormSection {
    Q_OBJECT

public:
    SoundSection(const WindowContext &context, QWidget *parent);

private:
    void addSuppression(AgentConnections &connections);
    void addSounds(MorvaneSettings &settings);
    void addTests(const ProgramActions &program);
};

} // namespace morvane
