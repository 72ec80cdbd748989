#pragma once

#include "Platform/OverlayWindow.h"

#include <QAbstractNativeEventFilter>
#include <QHash>
#include <QObject>
#include <QPainterPath>

#include <cstdint>

class QWidget;

namespace morvane {

class FullscreenWindows;
class X11Connection;

/// An overlay as an override-redirect window, the one kind that every window manager leaves above
/// full-screen programs and on all desktops. The input shape and the anchor are set on Qt's own
/// connection, in step with what Qt sends for the same window.
class X11OverlayWindow : public QObject, public OverlayWindow, private QAbstractNativeEventFilter {
    Q_OBJECT

public:
    /// The overlays that have taken the keyboard, each with the window that had it before any
    /// overlay.
    using KeyboardOwners = QHash<std::uint32_t, std::uint32_t>;

    /// The arguments must outlive the window; all overlays share the owners.
    X11OverlayWindow(QWidget &widget, X11Connection &x11, FullscreenWindows &fullscreen,
                     KeyboardOwners &owners);
    ~X11OverlayWindow() override;

    void setGeometry(const QRect &frame, Anchor anchor) override;
    void setShape(const QPainterPath &shape) override;
    void show() override;
    void hide() override;
    bool isVisible() const override { return m_isShown; }
    bool isCovered() const override { return m_isCovered; }
    void setOpacity(double opacity) override;
    double opacity() const override { return m_opacity; }
    void setHidesOverFullscreen(bool hides) override;
    bool takeKeyboard() override;
    bool holdsKeyboard() const override;
    void releaseKeyboard() override;
    bool hearsOtherClicks() const override;
    bool isTranslucent() const override;

private:
    bool nativeEventFilter(const QByteArray &kind, void *message, qintptr *result) override;
    void applyAnchor(Anchor anchor);
    void applyShape();
    void applyVisibility();
    void giveUpKeyboardTo(std::uint32_t owner);
    bool isOwnerUnderPointer() const;
    bool findCovered() const;
    bool isTypedIn() const;
    void raise();

    QWidget &m_widget;
    X11Connection &m_x11;
    FullscreenWindows &m_fullscreen;
    KeyboardOwners &m_owners;
    std::uint32_t m_window = 0;
    QPainterPath m_shape;
    double m_shapeRatio = 0; ///< device pixels to the point when the shape was applied
    double m_opacity = 1;
    bool m_isShown = false;
    bool m_isCovered = false;
    bool m_hidesOverFullscreen = false;
};

} // namespace morvane
