#pragma once

#include "Platform/Time.h"
#include "Presentation/Overlay/Lease.h"

#include <QObject>

namespace morvane {

/// Counts the text fields that are open in the panels, so that a panel stays open, and Esc belongs
/// to the field, while somebody types. A field that is forgotten holds a panel no longer than the
/// lease, which begins anew with each change of a text. Main thread.
class InlineEditing : public QObject {
    Q_OBJECT

public:
    static constexpr Seconds lease{120};

    /// The one that all panels share; it is made in `main`'s thread and passed to whoever needs it.
    static InlineEditing &shared();

    bool isActive(Date now) const { return rest(now) > Seconds(0); }

    /// How long the open fields still count, if no other is opened and nobody types; 0 without one.
    Seconds rest(Date now) const { return m_lease.left(now); }

    /// Called once by each field that opens, and then once by each that goes away.
    void begin(Date now);
    void end();

    /// Called by an open field whose text somebody changes.
    void renew(Date now);

signals:
    /// Also when somebody comes back to a field that was forgotten. That it is forgotten nobody is
    /// told, but for `rest`.
    void countChanged();

private:
    int m_count = 0;
    Lease m_lease{lease}; ///< over without an open field
};

} // namespace morvane
