#pragma once

#include "Presentation/Windows/FormSection.h"
#include "Presentation/Windows/WindowContext.h"

namespace morvane {

/// "Privacy": what the maker's server is told, and whether it is.
class PrivacySection : public FormSection {
    Q_OBJECT

public:
    PrivacySection(const WindowContext &context, QWidget *parent);
};

} // namespace morvane
