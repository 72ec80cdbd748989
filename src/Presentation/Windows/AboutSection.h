#pragma once

#include "Presentation/Windows/FormSection.h"

namespace morvane {

/// "About": which program this is, and whose work it stands on.
class AboutSection : public FormSection {
    Q_OBJECT

public:
    explicit AboutSection(QWidget *parent);

private:
    void showAcknowledgements();
};

} // namespace morvane
