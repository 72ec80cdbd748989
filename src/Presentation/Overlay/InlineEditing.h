#pragma once

#include "Platform/Time.h"
#include "Presentation/Overlay/Lease.h"

#include <QObject>

namespace morvane {

/// Counts the text fields that are open in the panels: while somebody types, a panel stays open,
/// and Esc belongs to the field. A forgotten field holds a panel open only until the lease ends;
/// each change of a text renews the lease. Main thread.
class InlineEditing : public QObject {
    Q_OBJECT

public:
    static constexpr Seconds lease{120};

    /// The instance that all panels share; made on the main thread and passed to whoever needs it.
    static InlineEditing &shared();

    bool isActive(Date now) const { return rest(now) > Seconds(0); }

    /// How long the open fields still count if no other opens and nobody types; 0 if none is open.
    Seconds rest(Date now) const { return m_lease.left(now); }

    /// Each field calls `begin` once when it opens, and `end` once when it goes away.
    void begin(Date now);
    void end();

    /// Called by an open field whenever somebody changes its text.
    void renew(Date now);

signals:
    /// Also sent when somebody types in a forgotten field again. The end of a lease sends nothing;
    /// `rest` tells it.
    void countChanged();

private:
    int m_count = 0;
    Lease m_lease{lease}; ///< ended while no field is open
};

} // namespace morvane
