#pragma once

#include "Platform/Displays.h"
#include "Platform/Linux/KnownNotches.h"
#include "Platform/Linux/X11/WorkArea.h"

class QScreen;

namespace morvane {

class X11Connection;

/// The displays as Qt reports them, but with our own work areas: Qt lets a bar on one display
/// shorten those of all. Owned by the application; the connection must outlive it.
class ScreenDisplays : public Displays {
    Q_OBJECT

public:
    explicit ScreenDisplays(X11Connection &x11);

    QList<Display> displays() const override;
    QPoint pointerPosition() const override;
    bool isPointerKnown() const override;

private:
    void watch(QScreen *screen);
    Display display(const QScreen &screen, bool isAlone) const;
    void addNotch(Display &display, const QScreen &screen) const;
    QRect workArea(const QScreen &screen, bool isAlone) const;

    X11Connection &m_x11;
    const KnownNotches m_notches;
    const WorkArea m_workArea;
};

} // namespace morvane
