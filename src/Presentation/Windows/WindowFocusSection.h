#pragma once

#include "Presentation/Windows/FormSection.h"
#include "Presentation/Windows/WindowContext.h"

namespace morvane {

/// "Window focus": whether a jump can raise the right window.
class WindowFocusSection : public FormSection {
    Q_OBJECT

public:
    WindowFocusSection(const WindowContext &context, QWidget *parent);
};

} // namespace morvane
