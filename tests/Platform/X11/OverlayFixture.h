#pragma once

#include "Platform/Linux/X11/ActiveWindow.h"
#include "Platform/Linux/X11/X11FullscreenWindows.h"
#include "Platform/Linux/X11/X11OverlayWindows.h"
#include "Platform/Linux/X11/XcbReply.h"
#include "Platform/X11/OnX11.h"
#include "Support/Printing.h"

#include <QApplication>
#include <QLineEdit>
#include <QPainterPath>
#include <xcb/xcb.h>

namespace morvane {

inline constexpr QRect overlayFrame(490, 0, 300, 100);

/// An overlay with a text field on it, above a terminal that has the keyboard, under a window
/// manager.
class OverlayFixture : public OnX11<QApplication> {
protected:
    using OnX11::OnX11;

    void startAll() override {
        ASSERT_NO_FATAL_FAILURE(startTerminal());
        ASSERT_NO_FATAL_FAILURE(startApplication());
        active = std::make_unique<ActiveWindow>(*x11);
        QObject::connect(active.get(), &ForegroundApplication::activated, application.get(),
                         [this](const QString &name) { activations.append(name); });
        overlays =
            std::make_unique<X11OverlayWindows>(*x11, std::make_unique<X11FullscreenWindows>(*x11));
        panel = std::make_unique<QWidget>();
        field = new QLineEdit(panel.get());
        field->setGeometry(20, 20, 200, 30);
        overlay = overlays->adopt(*panel);
        QPainterPath shape;
        shape.addRoundedRect(QRectF(QPointF(), overlayFrame.size()), 20, 20);
        overlay->setShape(shape);
        overlay->setGeometry(overlayFrame, OverlayWindow::Anchor::topCenter);
        overlay->show();
        ASSERT_TRUE(becomesTrue([this] { return isOnTop(); }));
    }

    void type(const char *text) const {
        const auto typing = display->type(QLatin1String(text));
        becomesTrue([&] { return !typing->isRunning(); });
    }

    /// Whether no visible window lies above the overlay.
    bool isOnTop() const {
        auto *connection = x11->connection();
        const XcbReply<xcb_query_tree_reply_t> tree(
            xcb_query_tree_reply(connection, xcb_query_tree(connection, x11->root()), nullptr));
        const auto *windows = xcb_query_tree_children(tree.get());
        for (int index = xcb_query_tree_children_length(tree.get()) - 1; index >= 0; --index) {
            const XcbReply<xcb_get_window_attributes_reply_t> attributes(
                xcb_get_window_attributes_reply(
                    connection, xcb_get_window_attributes(connection, windows[index]), nullptr));
            if (attributes && attributes->_class == XCB_WINDOW_CLASS_INPUT_OUTPUT &&
                attributes->map_state == XCB_MAP_STATE_VIEWABLE) {
                return windows[index] == panel->winId();
            }
        }
        return false;
    }

    /// Takes the keyboard; whether the field gets it.
    bool takeKeyboard() const {
        const bool isTaken = overlay->takeKeyboard();
        field->setFocus();
        return isTaken && becomesTrue([this] { return field->hasFocus(); });
    }

    QStringList activations; ///< the programs that were reported to be in front
    std::unique_ptr<ActiveWindow> active;
    std::unique_ptr<X11OverlayWindows> overlays;
    std::unique_ptr<QWidget> panel;
    QLineEdit *field = nullptr;
    std::unique_ptr<OverlayWindow> overlay;
};

} // namespace morvane
