#pragma once

#include "Platform/Linux/X11/Strut.h"

#include <QList>
#include <QObject>
#include <QRect>

#include <cstdint>

namespace morvane {

class X11Connection;

/// What bars and docks leave of the desktop, from their struts, whether the window manager manages
/// them or not, and from the work area that the window manager reports. All in device pixels. Owned
/// by `ScreenDisplays`; the connection must outlive it.
class WorkArea : public QObject {
    Q_OBJECT

public:
    explicit WorkArea(X11Connection &x11);

    /// What is left of a screen. The window manager reports one area for all screens, so it is used
    /// only for a screen that is alone.
    QRect of(const QRect &screen, bool isAlone) const;

signals:
    void changed();

private:
    void read();
    QList<std::uint32_t> windowsInView() const;
    QList<Strut> strutsOf(const QList<std::uint32_t> &windows) const;
    QRect toldArea() const;

    X11Connection &m_x11;
    QList<Strut> m_struts;
    QRect m_told; ///< the window manager's area; empty if it reports none
};

} // namespace morvane
