#pragma once

#include "Presentation/Windows/FormSection.h"
#include "Presentation/Windows/WindowContext.h"

namespace morvane {

/// "Displays": where Morvane shows itself.
class DisplaysSection : public FormSection {
    Q_OBJECT

public:
    DisplaysSection(const WindowContext &context, QWidget *parent);
};

} // namespace morvane
