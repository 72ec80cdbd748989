#pragma once

#include "Platform/Time.h"

#include <optional>

namespace morvane {

/// Decides when the pointer opens the panel in a notch and when it closes it. The window is always
/// there and the pointer crosses the notch on its way elsewhere, so opening and closing both take a
/// while, nothing is decided right after a change, and a panel that was closed on purpose stays
/// closed until the pointer has left. Keeps time and state only: no timer, no window; its owner
/// polls it whenever the pointer may have moved, and does what it says.
///
/// | State           | isOpen | presented   | entered by                                          |
/// |-----------------|--------|-------------|-----------------------------------------------------|
/// | closed          | false  | false       | the start, and every way of closing                 |
/// | arming          | false  | false       | the pointer inside, for less than `openDelay`       |
/// | open by hover   | true   | false       | the pointer inside for that long                    |
/// | closing         | true   | false       | the pointer outside, for less than `closeDelay`     |
/// | open on request | true   | true        | `present`; the pointer doesn't matter               |
class NotchHover {
public:
    static constexpr Seconds openDelay{0.35};
    static constexpr Seconds closeDelay{0.4};
    static constexpr Seconds transitionLock{0.3};

    /// Where the pointer is, and what keeps the panel as it is.
    struct Facts {
        bool isInside = false; ///< on the notch, or on what is shown of the panel
        Seconds editing{0};    ///< how long an open text field still freezes everything
    };

    struct Decision {
        enum class Change { none, open, close };
        Change change = Change::none;
        std::optional<Seconds> checkAfter = {}; ///< when to poll again even if the pointer rests

        friend bool operator==(const Decision &, const Decision &) = default;
    };

    [[nodiscard]] Decision poll(Date now, const Facts &facts);

    /// Opens without the pointer, also during a lock.
    void present();

    /// Ends a presentation: the panel closes, and from then on the pointer decides.
    void endPresentation();

    /// Closes on request; the pointer can open it again only after it has left.
    void collapse();

    /// Closes as `collapse` does, and the surface stays away until something new happens.
    void dismiss();

    /// Something new has happened.
    void undismiss() { m_isDismissed = false; }

    /// Blocks all decisions for `transitionLock`; called at each change of what is on screen.
    void lock(Date now);

    bool isOpen() const { return m_isOpen; }
    bool isDismissed() const { return m_isDismissed; }

private:
    Decision pollInside(Date now);
    Decision pollOutside(Date now);
    void forgetPointer();

    bool m_isOpen = false;
    bool m_isPresented = false;
    bool m_isDismissed = false;
    bool m_isRearmPending = false; ///< the pointer must leave before it can open again
    std::optional<Date> m_zoneEnteredAt;
    std::optional<Date> m_zoneLeftAt;
    std::optional<Date> m_lockedUntil;
};

} // namespace morvane
