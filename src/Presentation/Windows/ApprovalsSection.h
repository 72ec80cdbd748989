#pragma once

#include "Presentation/Windows/FormSection.h"
#include "Presentation/Windows/WindowContext.h"

namespace morvane {

/// "Approvals": whether prompts can be answered from the panel.
class ApprovalsSection : public FormSection {
    Q_OBJECT

public:
    ApprovalsSection(const WindowContext &context, QWidget *parent);
};

} // namespace morvane
