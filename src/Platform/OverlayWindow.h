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

    /// The edge at which what is painted stays put while the window changes its size, until the
    /// widget has painted itself anew.
    enum class Anchor { topCenter, topRight };

    /// Moves and resizes in one step, in the desktop's points.
    virtual void setGeometry(const QRect &frame, Anchor anchor) = 0;

    /// The part, in the widget's points, that takes clicks; everywhere else they reach what lies
    /// below. Where nothing can be translucent the rest is cut off as well.
    virtual void setShape(const QPainterPath &shape) = 0;

    virtual void show() = 0;
    virtual void hide() = 0;
    /// Whether it has been shown, even if a full-screen program hides it for now.
    virtual bool isVisible() const = 0;

    /// Whether a full-screen program hides it for now.
    virtual bool isCovered() const = 0;

    /// Called when that has changed.
    std::function<void()> onCoveredChanged;

    /// From 0 to 1; without effect where nothing can be translucent.
    virtual void setOpacity(double opacity) = 0;
    virtual double opacity() const = 0;

    /// Whether the window gives way to a full-screen program on its display.
    virtual void setHidesOverFullscreen(bool hides) = 0;

    /// Gives the window the keyboard, without making this program the active one. False where the
    /// desktop gives it to no window of this kind; then nothing has changed.
    [[nodiscard]] virtual bool takeKeyboard() = 0;

    /// Whether it has the keyboard and nobody has taken that from it.
    virtual bool holdsKeyboard() const = 0;

    /// Gives the keyboard back to whoever had it, unless it has gone elsewhere in the meantime.
    virtual void releaseKeyboard() = 0;

    /// Whether a menu that is open on it hears of clicks on other programs' windows.
    virtual bool hearsOtherClicks() const { return true; }

    /// True when what the widget leaves unpainted shows what lies below.
    virtual bool isTranslucent() const = 0;
};

} // namespace morvane
