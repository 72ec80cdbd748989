#pragma once

#include "Platform/Linux/Desktop/FullscreenWindows.h"

#include <QMap>

#include <cstdint>
#include <optional>

namespace morvane {

class X11Connection;

/// The full-screen windows of an X server: on each display the window that was last active there,
/// if it is full-screen.
class X11FullscreenWindows : public FullscreenWindows {
    Q_OBJECT

public:
    /// The connection must outlive it.
    explicit X11FullscreenWindows(X11Connection &x11) : m_x11(x11) {}

    void follow() override;

private:
    struct Window {
        QRect frame;
        bool isFullscreen = false;
        bool isInView = false;
    };

    void refresh();
    std::optional<Window> read(std::uint32_t window) const;
    bool isOnOtherDesktop(std::uint32_t window) const;
    void watch(const QList<std::uint32_t> &covering, std::uint32_t active);

    X11Connection &m_x11;
    bool m_isFollowing = false;
    QMap<std::uint32_t, QRect> m_covering; ///< the full-screen windows that are in front
    QList<std::uint32_t> m_watched;
};

} // namespace morvane
