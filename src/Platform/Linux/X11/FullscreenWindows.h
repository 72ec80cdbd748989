#pragma once

#include <QHash>
#include <QObject>
#include <QRect>

#include <cstdint>
#include <optional>

namespace morvane {

class X11Connection;

/// Where on the screen a full-screen program is in front: on each display the window that was the
/// active one there last, if it is full-screen. Owned by `X11OverlayWindows`; main thread.
class FullscreenWindows : public QObject {
    Q_OBJECT

public:
    /// The connection must outlive it.
    explicit FullscreenWindows(X11Connection &x11) : m_x11(x11) {}

    /// Begins to look. Not before somebody needs it, since every window that changes its title
    /// wakes the program up from then on.
    void follow();

    bool isEmpty() const { return m_covering.isEmpty(); }

    /// True when one of them covers some of this place, in the X screen's own pixels.
    bool cover(const QRect &frame) const;

signals:
    void changed();

private:
    struct Window {
        QRect frame;
        bool isFullscreen = false;
        bool isInView = false;
    };

    void refresh();
    std::optional<Window> read(std::uint32_t window) const;
    bool isOnOtherDesktop(std::uint32_t window) const;
    void watch(const QHash<std::uint32_t, QRect> &covering, std::uint32_t active);

    X11Connection &m_x11;
    bool m_isFollowing = false;
    QHash<std::uint32_t, QRect> m_covering; ///< the full-screen windows that are in front
    QList<std::uint32_t> m_watched;
};

} // namespace morvane
