#include "Presentation/Notch/NotchHover.h"

#include <algorithm>

namespace morvane {

namespace {

/// What is left of `length` since the first call, whose time is kept in `since`. If the clock is
/// set back, the countdown starts over, so that it doesn't take longer.
Seconds countDown(Seconds length, std::optional<Date> &since, Date now) {
    since = std::min(since.value_or(now), now);
    return std::max(Seconds(0), Seconds(length - (now - *since)));
}

} // namespace

NotchHover::Decision NotchHover::poll(Date now, const Facts &facts) {
    if (m_lockedUntil) {
        const Seconds locked = *m_lockedUntil - now;
        if (locked > Seconds(0) && locked <= transitionLock) {
            return {.checkAfter = locked};
        }
        m_lockedUntil.reset();
    }
    if (facts.editing > Seconds(0)) {
        forgetPointer();
        return {.checkAfter = facts.editing};
    }
    if (m_isRearmPending) {
        m_isRearmPending = facts.isInside;
        m_zoneEnteredAt.reset();
        return {};
    }
    return facts.isInside ? pollInside(now) : pollOutside(now);
}

NotchHover::Decision NotchHover::pollInside(Date now) {
    m_zoneLeftAt.reset();
    if (m_isOpen) {
        return {};
    }
    if (const Seconds left = countDown(openDelay, m_zoneEnteredAt, now); left > Seconds(0)) {
        return {.checkAfter = left};
    }
    m_zoneEnteredAt.reset();
    m_isDismissed = false;
    m_isOpen = true;
    return {.change = Decision::Change::open};
}

NotchHover::Decision NotchHover::pollOutside(Date now) {
    m_zoneEnteredAt.reset();
    if (!m_isOpen || m_isPresented) {
        return {};
    }
    if (const Seconds left = countDown(closeDelay, m_zoneLeftAt, now); left > Seconds(0)) {
        return {.checkAfter = left};
    }
    m_isOpen = false;
    return {.change = Decision::Change::close};
}

void NotchHover::present() {
    m_isDismissed = false;
    m_isPresented = true;
    m_isOpen = true;
    m_isRearmPending = false;
    m_lockedUntil.reset();
    forgetPointer();
}

void NotchHover::endPresentation() {
    m_isPresented = false;
    m_isOpen = false;
}

void NotchHover::collapse() {
    endPresentation();
    m_isRearmPending = true;
}

void NotchHover::dismiss() {
    m_isDismissed = true;
    collapse();
}

void NotchHover::lock(Date now) {
    m_lockedUntil = now + transitionLock;
    forgetPointer();
}

void NotchHover::forgetPointer() {
    m_zoneEnteredAt.reset();
    m_zoneLeftAt.reset();
}

} // namespace morvane
