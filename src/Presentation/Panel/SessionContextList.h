#pragma once

#include "Presentation/Panel/ListViewport.h"

namespace morvane {

struct PanelContext;
class SessionStore;

/// The contexts of all live sessions, those at work first. Scrolls when it would become too tall.
class SessionContextList : public ListViewport {
    Q_OBJECT

public:
    SessionContextList(const PanelContext &context, QWidget *parent);

    /// In points.
    void setHeightLimit(int limit) { m_heightLimit = limit; }

    /// Shows what the store has now.
    void showSessions();

    QSize sizeHint() const override { return {0, m_height}; }

private:
    const SessionStore &m_store;
    int m_heightLimit = 0;
    int m_height = 0;
};

} // namespace morvane
