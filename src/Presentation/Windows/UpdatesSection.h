#pragma once

#include "Platform/Task.h"
#include "Presentation/Windows/FormSection.h"
#include "Presentation/Windows/WindowContext.h"

namespace morvane {

/// "Updates": whether newer versions are looked for, and when that was done last.
class UpdatesSection : public FormSection {
    Q_OBJECT

public:
    UpdatesSection(const WindowContext &context, QWidget *parent);

protected:
    void showEvent(QShowEvent *event) override;

private:
    void addCheck(const ProgramActions &program);
    void showLastCheck(TextLabel &label);

    const UpdateManager &m_updates;
    Scheduler &m_scheduler;
    Task m_nextText;
};

} // namespace morvane
