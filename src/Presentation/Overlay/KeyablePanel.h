#pragma once

#include <QWidget>

namespace morvane {

class OverlayWindow;

/// The widget of an overlay in which there may be a text field. An overlay never has the keyboard
/// by itself; while a field of it is open it asks for it, and while a person works it with the
/// keys.
class KeyablePanel : public QWidget {
    Q_OBJECT

public:
    using QWidget::QWidget;

    /// The part of the widget that there is something to see in.
    virtual QRect visibleRect() const { return rect(); }

    /// Its window, from which it takes the keyboard. Set by the presenter, which owns the window,
    /// and set to none before that goes.
    void setOverlay(OverlayWindow *overlay) { m_overlay = overlay; }

    /// Called by each field that opens. False where keys can't reach the panel.
    [[nodiscard]] bool makeKey();

    /// Called by a field that is open when it is clicked: the keyboard may have gone elsewhere.
    /// False where it wasn't given back.
    bool renewKey();

    /// Called by each field that asked for the keyboard, when it goes away; the last one gives it
    /// back.
    void resignKey();

    /// Takes the keyboard for a person who works the panel with the keys, also where it has gone
    /// elsewhere meanwhile. False where keys can't reach the panel.
    [[nodiscard]] bool beginKeyboardUse();
    void endKeyboardUse();

    /// Whether it was taken for such a person, and not given back since.
    bool isUsedByKeys() const { return m_isUsedByKeys; }

private:
    bool takeKeyboard() const;

    OverlayWindow *m_overlay = nullptr;
    int m_users = 0; ///< that have asked and have been given the keyboard
    bool m_isUsedByKeys = false;
};

} // namespace morvane
