#pragma once

#include "Platform/OverlayWindow.h"

#include <QObject>

#include <cstdint>

class QWidget;

namespace morvane {

class X11Connection;

/// An overlay as an override-redirect window, the one kind that every window manager leaves above
/// full-screen programs and on all desktops. The input shape and the anchor are set on Qt's own
/// connection, in step with what Qt sends for the same window.
class X11OverlayWindow : public QObject, public OverlayWindow {
    Q_OBJECT

public:
    /// The widget and the connection must outlive the window.
    X11OverlayWindow(QWidget &widget, X11Connection &x11);
    ~X11OverlayWindow() override;

    void setGeometry(const QRect &frame, Anchor anchor) override;
    void setShape(const QRegion &shape) override;
    void show() override;
    void hide() override;
    bool isVisible() const override;
    void setOpacity(double opacity) override;
    double opacity() const override { return m_opacity; }
    void setHidesOverFullscreen(bool hides) override;
    bool takeKeyboard() override;
    void releaseKeyboard() override;
    bool isTranslucent() const override;

private:
    void applyAnchor(Anchor anchor);
    void applyShape();
    void raise();

    QWidget &m_widget;
    X11Connection &m_x11;
    std::uint32_t m_window = 0;
    QRegion m_shape;
    double m_opacity = 1;
};

} // namespace morvane
