#pragma once

#include "Presentation/Style/KeyStroke.h"

#include <QWidget>

namespace morvane {

/// An ordinary window of the desktop, which the window manager moves and closes; Esc closes it too.
/// Main thread.
class ManagedWindow : public QWidget {
    Q_OBJECT

public:
    /// Not shown before `present`.
    explicit ManagedWindow(const QString &title);

    /// Puts the window in front, with the keyboard, whichever desktop it was on. If it was never
    /// shown before, centres it on the display with the pointer and shrinks it to the room there.
    void present();

    /// Shows the window, if it isn't there already, and leaves the keyboard to whoever has it.
    void presentQuietly();

    /// Whether it stays above ordinary windows, even the active one.
    void setAboveOthers(bool isAbove);

signals:
    /// The window has become the active one.
    void activated();

protected:
    bool event(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void keyReleaseEvent(QKeyEvent *event) override;

private:
    /// True for a window that nobody has asked for, until a click or Tab moves the focus into it.
    /// What somebody goes on typing then does nothing.
    bool isUntouched() const;

    /// Acts only once: later the window reappears where it was.
    void centreAtFirst();
    void fitInto(const QSize &room);

    bool m_wasPresented = false;
    bool m_isUnasked = false;
    KeyStroke m_closing;
};

} // namespace morvane
