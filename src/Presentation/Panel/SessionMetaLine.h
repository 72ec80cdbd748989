#pragma once

#include <QWidget>

namespace morvane {

class Badge;
class ContextBadge;
class PermissionModeBadge;
struct Session;

/// The last line of a row: where the session runs, on which branch, how freely and with how much
/// context. Hidden while there is nothing to tell.
class SessionMetaLine : public QWidget {
    Q_OBJECT

public:
    explicit SessionMetaLine(QWidget *parent);

    void setSession(const Session &session);

private:
    Badge *m_host;
    Badge *m_branch;
    PermissionModeBadge *m_mode;
    ContextBadge *m_context;
};

} // namespace morvane
