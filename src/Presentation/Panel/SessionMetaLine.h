#pragma once

#include <QWidget>

namespace morvane {

class Badge;
class ContextBadge;
class PermissionModeBadge;
struct Session;

/// The line below a row's subtitle: the host app, the branch, the permission mode and the size of
/// the context. Hidden while there is none of them to show.
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
