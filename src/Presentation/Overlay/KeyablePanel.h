#pragma once

#include <QWidget>

namespace morvane {

class OverlayWindow;

/// The widget of an overlay that may contain text fields. An overlay never has the keyboard by
/// itself; the panel takes it while one of its fields is open or a person works it with the keys.
class KeyablePanel : public QWidget {
    Q_OBJECT

public:
    using QWidget::QWidget;

    /// The part of the widget in which something is drawn.
    virtual QRect visibleRect() const { return rect(); }

    /// Sets the window through which the panel takes the keyboard. Called by the presenter, which
    /// owns the window, and called with null before the window is destroyed.
    void setOverlay(OverlayWindow *overlay) { m_overlay = overlay; }

    /// Called by each field that opens. False if the panel can't get the keyboard.
    [[nodiscard]] bool makeKey();

    /// Called when an open field is clicked, since the keyboard may have gone elsewhere. False if
    /// the panel doesn't get it back.
    bool renewKey();

    /// Called by each field that asked for the keyboard, when it goes away; the last one gives it
    /// back.
    void resignKey();

    /// Takes the keyboard, or takes it back, for a person who works the panel with the keys. False
    /// if the panel can't get it.
    [[nodiscard]] bool beginKeyboardUse();
    void endKeyboardUse();

    /// Whether such a use has begun and not ended.
    bool isUsedByKeys() const { return m_isUsedByKeys; }

private:
    bool takeKeyboard() const;

    OverlayWindow *m_overlay = nullptr;
    int m_users = 0; ///< how many have asked for the keyboard and got it
    bool m_isUsedByKeys = false;
};

} // namespace morvane
