#include "Presentation/ManagedWindow.h"

#include "Presentation/MenuBarIcon.h"

#include <QCursor>
#include <QGuiApplication>
#include <QPalette>
#include <QScreen>

#include <utility>

namespace morvane {

namespace {

constexpr QColor background(28, 28, 30);
constexpr QColor control(58, 58, 60);
constexpr QColor icon(255, 214, 10);

} // namespace

ManagedWindow::ManagedWindow(const QString &title) {
    setWindowTitle(title);
    setWindowIcon(MenuBarIcon::icon(icon));
    setPalette(QPalette(control, background));
}

void ManagedWindow::present() {
    if (!std::exchange(m_wasPresented, true)) {
        centre();
    }
    setWindowState(windowState() & ~Qt::WindowMinimized);
    show();
    raise();
    activateWindow();
}

void ManagedWindow::centre() {
    const QScreen *screen = QGuiApplication::screenAt(QCursor::pos());
    if (screen == nullptr) {
        screen = QGuiApplication::primaryScreen();
    }
    QRect frame = rect();
    frame.moveCenter(screen->geometry().center());
    move(frame.topLeft());
}

} // namespace morvane
