#pragma once

#include "Platform/OverlayWindow.h"

#include <QList>
#include <QPainterPath>
#include <QRegion>
#include <QWidget>

namespace morvane {

/// Keeps what an overlay was told, and shows its widget on Qt's offscreen platform.
class FakeOverlayWindow : public OverlayWindow {
public:
    FakeOverlayWindow(QWidget &widget, QList<FakeOverlayWindow *> &alive)
        : m_widget(widget), m_alive(alive) {
        m_alive.append(this);
    }
    ~FakeOverlayWindow() override { m_alive.removeOne(this); }

    void setGeometry(const QRect &frame, Anchor) override {
        if (frame.size() != geometry.size()) {
            ++resizes;
        }
        geometry = frame;
        m_widget.setGeometry(frame);
    }
    void setShape(const QPainterPath &path) override {
        shape = QRegion(path.toFillPolygon().toPolygon());
    }
    void show() override { m_widget.show(); }
    void hide() override { m_widget.hide(); }
    bool isVisible() const override { return m_widget.isVisible(); }
    bool isCovered() const override { return m_isCovered; }
    void setCovered(bool isCovered) {
        m_isCovered = isCovered;
        onCoveredChanged();
    }
    void setOpacity(double opacity) override { m_opacity = opacity; }
    double opacity() const override { return m_opacity; }
    void setHidesOverFullscreen(bool hides) override { hidesOverFullscreen = hides; }
    bool takeKeyboard() override { return hasKeyboard = canTakeKeyboard; }
    bool holdsKeyboard() const override { return hasKeyboard; }
    void releaseKeyboard() override { hasKeyboard = false; }
    bool hearsOtherClicks() const override { return hearsClicks; }
    bool isTranslucent() const override { return true; }

    QWidget &widget() const { return m_widget; }

    QRect geometry;
    QRegion shape;
    int resizes = 0;
    bool hidesOverFullscreen = false;
    bool canTakeKeyboard = true;
    bool hasKeyboard = false;
    bool hearsClicks = true;

private:
    QWidget &m_widget;
    QList<FakeOverlayWindow *> &m_alive;
    double m_opacity = 1;
    bool m_isCovered = false;
};

} // namespace morvane
