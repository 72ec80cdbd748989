#pragma once

#include "Presentation/Windows/WindowContext.h"

#include <QWidget>

#include <vector>

class QScrollArea;

namespace morvane {

class FormSection;
class TextLabel;

/// Everything that a person can set, a section each, in a form that scrolls. It follows the
/// settings and the connections. Below it stands what went wrong last, if anything.
class SettingsView : public QWidget {
    Q_OBJECT

public:
    SettingsView(const WindowContext &context, QWidget *parent);

    /// Looks anew at what others may have changed; not while nobody can see it.
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
