#pragma once

#include "Presentation/Windows/FormSection.h"
#include "Presentation/Windows/WindowContext.h"

namespace morvane {

/// "Privacy": what is sent to the maker's server, and whether it is.
class PrivacySection : public FormSection {
    Q_OBJECT

public:
    PrivacySection(const WindowContext &context, QWidget *parent);
};

} // namespace morvane
