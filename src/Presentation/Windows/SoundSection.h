#pragma once

#include "Presentation/Windows/FormSection.h"
#include "Presentation/Windows/WindowContext.h"

namespace morvane {

/// "Sound & Notifications": which sounds we play, and whether the agents send notifications of
/// their own.
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
