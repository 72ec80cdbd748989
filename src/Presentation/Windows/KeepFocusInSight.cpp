#include "Presentation/Windows/KeepFocusInSight.h"

#include <QApplication>
#include <QScrollArea>

namespace morvane {

namespace {

constexpr int marginInSight = 22; ///< above and below, in points

} // namespace

void keepFocusInSight(QWidget &owner) {
    const auto follow = [&owner](const QWidget *before, QWidget *now) {
        const bool isPressed = QGuiApplication::mouseButtons() != Qt::NoButton;
        if (before == nullptr || isPressed || !owner.isAncestorOf(now)) {
            return;
        }
        for (QWidget *around = now; around != &owner; around = around->parentWidget()) {
            if (auto *view = qobject_cast<QScrollArea *>(around)) {
                view->ensureWidgetVisible(now, 0, marginInSight);
            }
        }
    };
    QObject::connect(qApp, &QApplication::focusChanged, &owner, follow);
}

} // namespace morvane
