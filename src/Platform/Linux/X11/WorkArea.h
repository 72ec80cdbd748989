#pragma once

#include "Platform/Linux/X11/Strut.h"

#include <QList>
#include <QObject>
#include <QRect>

#include <cstdint>

namespace morvane {

class X11Connection;

/// What bars and docks leave of the desktop: by their struts, whether the window manager manages
/// them or they have put themselves there, and by the area that the window manager tells. All in
/// device pixels. Owned by `ScreenDisplays`; the connection must outlive it.
class WorkArea : public QObject {
    Q_OBJECT

public:
    explicit WorkArea(X11Connection &x11);

    /// What is left of a screen. The window manager tells one area for all of them, so that only
    /// that of a screen that is alone can be told from it.
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
    QRect m_told; ///< empty where no window manager tells
};

} // namespace morvane
