#pragma once

#include "Platform/Scheduler.h"

#include <QObject>

namespace morvane {

class InlineEditing;

/// Whether a capsule is open. It opens at once under the pointer, and closes a moment after the
/// pointer has left, so that a slip over the edge closes nothing; while somebody types in a field,
/// closing waits. Owned by its presenter.
class CapsuleState : public QObject {
    Q_OBJECT

public:
    CapsuleState(Scheduler &scheduler, const InlineEditing &editing)
        : m_scheduler(scheduler), m_editing(editing) {}

    bool isExpanded() const { return m_isExpanded; }

    void setHovering(bool hovering);

    /// Opens it without the pointer; it stays open until the next `setHovering`.
    void open();

signals:
    void expandedChanged(bool isExpanded);

private:
    void collapseUnlessEditing();
    void setExpanded(bool expanded);

    Scheduler &m_scheduler;
    const InlineEditing &m_editing;
    bool m_isExpanded = false;
    Task m_collapseTask;
};

} // namespace morvane
