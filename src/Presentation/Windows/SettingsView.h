#pragma once

#include "Presentation/Windows/WindowContext.h"

#include <QWidget>

#include <vector>

class QScrollArea;

namespace morvane {

class FormSection;
class TextLabel;

/// All settings, in the sections of a form that scrolls. It follows the settings and the
/// connections, and shows below the form what went wrong last, if anything.
class SettingsView : public QWidget {
    Q_OBJECT

public:
    SettingsView(const WindowContext &context, QWidget *parent);

    /// Shows what others may have changed; does nothing while the view is hidden.
    void refresh();

protected:
    void showEvent(QShowEvent *event) override;

private:
    void look();
    QWidget *makeForm(const WindowContext &context);
    QWidget *makeFailureBar();

    AgentConnections &m_connections;
    std::vector<FormSection *> m_sections;
    QScrollArea *m_scroll = nullptr;
    QWidget *m_failureBar = nullptr;
    TextLabel *m_failure = nullptr;
};

} // namespace morvane
