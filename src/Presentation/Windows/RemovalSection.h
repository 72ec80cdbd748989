#pragma once

#include "Presentation/Windows/FormSection.h"
#include "Presentation/Windows/WindowContext.h"

class QMessageBox;

namespace morvane {

/// After asking, removes everything of ours from the machine and ends the program.
class RemovalSection : public FormSection {
    Q_OBJECT

public:
    RemovalSection(const WindowContext &context, QWidget *parent);

    /// Asks first; any answer but "Remove and Quit" changes nothing.
    void confirmRemoveEverything();

private:
    void removeEverything();
    QMessageBox *makeAlert(const QString &message, const QString &text);

    ProgramActions m_program;
};

} // namespace morvane
