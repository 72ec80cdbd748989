#pragma once

#include "Presentation/Style/KeyStroke.h"

#include <QWidget>

namespace morvane {

/// An ordinary window of the desktop, which the window manager moves and closes, as Esc does. Main
/// thread.
class ManagedWindow : public QWidget {
    Q_OBJECT

public:
    /// Not shown before `present`.
    explicit ManagedWindow(const QString &title);

    /// Puts the window in front, with the keyboard, whichever desktop it was on; in the middle of
    /// the display that has the pointer, and no larger than there is room for on that, if it wasn't
    /// on the screen before.
    void present();

    /// Shows the window, if it isn't there already, and leaves the keyboard to whoever has it.
    void presentQuietly();

    /// Whether it keeps above ordinary windows, even those that are in front.
    void setAboveOthers(bool isAbove);

signals:
    /// Somebody has come to it, or back to it.
    void activated();

protected:
    bool event(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void keyReleaseEvent(QKeyEvent *event) override;

private:
    /// Later on the window comes back where it was.
    void centreAtFirst();
    void fitInto(const QSize &room);

    bool m_wasPresented = false;
    KeyStroke m_closing;
};

} // namespace morvane
