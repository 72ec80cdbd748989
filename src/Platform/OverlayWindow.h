#pragma once

#include <QRect>

#include <functional>

class QPainterPath;

namespace morvane {

/// A widget's window that stays above all others, is on every workspace and never takes the focus.
/// Made by `OverlayWindows`, owned by a presenter, outlived by its widget. Hidden at first. Main
/// thread.
class OverlayWindow {
public:
    OverlayWindow() = default;
    OverlayWindow(const OverlayWindow &) = delete;
    OverlayWindow &operator=(const OverlayWindow &) = delete;
    virtual ~OverlayWindow() = default;

    /// Where the old contents stay put while the window is resized, until the widget has repainted.
    enum class Anchor { topCenter, topRight };

    /// Moves and resizes in one step, in the desktop's points.
    virtual void setGeometry(const QRect &frame, Anchor anchor) = 0;

    /// The part that takes clicks, in the widget's points; clicks elsewhere reach what lies below.
    /// Where windows can't be translucent, the window is also cut to this shape.
    virtual void setShape(const QPainterPath &shape) = 0;

    virtual void show() = 0;
    virtual void hide() = 0;
    /// Whether it has been shown, even if a full-screen program hides it for now.
    virtual bool isVisible() const = 0;

    /// Whether a full-screen program hides it for now.
    virtual bool isCovered() const = 0;

    /// Called when `isCovered` has changed.
    std::function<void()> onCoveredChanged;

    /// From 0 to 1; without effect where windows can't be translucent.
    virtual void setOpacity(double opacity) = 0;
    virtual double opacity() const = 0;

    /// Whether the window gives way to a full-screen program on its display.
    virtual void setHidesOverFullscreen(bool hides) = 0;

    /// Gives the window the keyboard without making this program the active one. Returns false and
    /// changes nothing where the desktop doesn't allow that for this kind of window.
    [[nodiscard]] virtual bool takeKeyboard() = 0;

    /// Whether it has taken the keyboard and still has it.
    virtual bool holdsKeyboard() const = 0;

    /// Gives the keyboard back to whoever had it, unless it has gone elsewhere in the meantime.
    virtual void releaseKeyboard() = 0;

    /// Whether an open menu of this window is told of clicks on other programs' windows.
    virtual bool hearsOtherClicks() const { return true; }

    /// True when what the widget leaves unpainted shows what lies below.
    virtual bool isTranslucent() const = 0;
};

} // namespace morvane
