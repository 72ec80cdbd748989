#include "Presentation/Windows/ManagedWindow.h"

#include "Presentation/Mascot/MenuBarIcon.h"
#include "Presentation/Style/Colors.h"

#include <QApplication>
#include <QCursor>
#include <QGuiApplication>
#include <QScreen>
#include <QWindow>

#include <utility>

namespace morvane {

namespace {

constexpr double shareOfScreen = 0.85; ///< for a window that can be resized
constexpr int titleBar = 40;           ///< at most, in points

} // namespace

ManagedWindow::ManagedWindow(const QString &title) {
    setWindowTitle(title);
    setWindowIcon(MenuBarIcon::icon(Colors::mascot, {}));
}

void ManagedWindow::present() {
    m_isUnasked = false;
    centreAtFirst();
    if (!isActiveWindow()) {
        // A request alone doesn't bring it from another desktop; hidden and shown again, it appears
        // on the current one.
        hide();
    }
    setWindowState(windowState() & ~Qt::WindowMinimized);
    show();
    raise();
    activateWindow();
}

void ManagedWindow::presentQuietly() {
    if (isVisible()) {
        return;
    }
    centreAtFirst();
    // Some desktops give each new window the keyboard nevertheless.
    m_isUnasked = true;
    setFocus();
    setAttribute(Qt::WA_ShowWithoutActivating);
    show();
    setAttribute(Qt::WA_ShowWithoutActivating, false);
}

void ManagedWindow::setAboveOthers(bool isAbove) {
    // QWidget::setWindowFlag would hide the window; shown again, it would be on the current
    // desktop, with the keyboard.
    overrideWindowFlags(windowFlags().setFlag(Qt::WindowStaysOnTopHint, isAbove));
    if (QWindow *handle = windowHandle()) {
        handle->setFlag(Qt::WindowStaysOnTopHint, isAbove);
    }
}

bool ManagedWindow::isUntouched() const {
    return m_isUnasked && QApplication::focusWidget() == this;
}

bool ManagedWindow::event(QEvent *event) {
    if (event->type() == QEvent::ShortcutOverride && isUntouched()) {
        event->accept(); // no mnemonic of a button comes before the window's own keys
        return true;
    }
    if (event->type() == QEvent::MouseButtonPress) {
        m_isUnasked = false;
    } else if (event->type() == QEvent::WindowActivate) {
        emit activated();
    } else if (event->type() == QEvent::WindowDeactivate) {
        m_closing.abandon();
    }
    return QWidget::event(event);
}

void ManagedWindow::keyPressEvent(QKeyEvent *event) {
    const bool closes = event->key() == Qt::Key_Escape || event->matches(QKeySequence::Close);
    if (closes && !isUntouched()) {
        m_closing.begin(*event);
    } else {
        QWidget::keyPressEvent(event);
    }
}

void ManagedWindow::keyReleaseEvent(QKeyEvent *event) {
    if (m_closing.isEndedBy(*event)) {
        close();
    } else {
        QWidget::keyReleaseEvent(event);
    }
}

void ManagedWindow::centreAtFirst() {
    if (std::exchange(m_wasPresented, true)) {
        return;
    }
    const QScreen *screen = QGuiApplication::screenAt(QCursor::pos());
    if (screen == nullptr) {
        screen = QGuiApplication::primaryScreen();
    }
    if (screen != nullptr) {
        const QRect room = screen->availableGeometry();
        const bool isFixed = minimumSize() == maximumSize();
        fitInto(isFixed ? room.size() - QSize(0, titleBar) : room.size() * shareOfScreen);
        QRect frame = rect().adjusted(0, 0, 0, titleBar);
        frame.moveCenter(room.center());
        move(frame.topLeft());
    }
}

/// Shrinks even a window of a fixed size.
void ManagedWindow::fitInto(const QSize &room) {
    const QSize fitting = size().boundedTo(room);
    if (fitting != size()) {
        setMinimumSize(minimumSize().boundedTo(fitting));
        resize(fitting);
    }
}

} // namespace morvane

#include "moc_ManagedWindow.cpp"
