#pragma once

#include "Core/Agents/AgentKind.h"
#include "Core/Hooks/Health.h"

#include <QWidget>

namespace morvane {

class AgentAdapter;
class AgentConnections;
class FormButton;
class PictureView;
class TextLabel;

/// An agent, with the buttons that connect, disconnect and repair it.
class AgentRow : public QWidget {
    Q_OBJECT

public:
    enum class Detail {
        name,
        health ///< also where its hooks go, and once it is connected, what is wrong with them
    };

    /// The connections must outlive the row. The parent takes the focus when a focused button goes
    /// away.
    AgentRow(const AgentAdapter &adapter, AgentConnections &connections, Detail detail,
             QWidget *parent);

    AgentKind agent() const { return m_agent; }

    /// Shows how it stands now.
    void refresh();

private:
    QWidget *makeTitle(const AgentAdapter &adapter);
    QWidget *makeStatus();
    QWidget *makeIssues();
    void showHealth(bool isConnected);

    AgentKind m_agent;
    AgentConnections &m_connections;
    Detail m_detail;
    bool m_isInstallable;
    PictureView *m_sign = nullptr;
    TextLabel *m_state = nullptr;
    FormButton *m_button = nullptr;
    QWidget *m_issueLine = nullptr;
    TextLabel *m_issues = nullptr;
    FormButton *m_repair = nullptr;
};

} // namespace morvane
