#pragma once

#include <QWidget>

namespace morvane {

class AgentBadge;
class ContextGauge;
struct Session;
class TextLabel;

/// How full the context of one session is.
class SessionContextRow : public QWidget {
    Q_OBJECT

public:
    explicit SessionContextRow(QWidget *parent);

    void setSession(const Session &session, bool showAgent);

private:
    void showContext(const Session &session);

    AgentBadge *m_agent;
    TextLabel *m_name;
    TextLabel *m_model;
    TextLabel *m_context;
    TextLabel *m_note; ///< shown where there is no gauge
    ContextGauge *m_gauge;
};

} // namespace morvane
