#include "Presentation/Overlay/FieldWindow.h"

#include "Presentation/Overlay/TextField.h"
#include "Presentation/Style/Colors.h"
#include "Presentation/Style/Typography.h"

#include <QCloseEvent>
#include <QGuiApplication>
#include <QScreen>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace morvane {

namespace {

constexpr int fieldMargin = 12;
constexpr int windowWidth = 300;
constexpr int panelDistance = 12;
constexpr int titleHeight = 48; ///< upper bound for the title bar of the desktop

QPalette dialogPalette() {
    QPalette palette;
    palette.setColor(QPalette::Window, Colors::windowFill);
    palette.setColor(QPalette::Base, Qt::black);
    palette.setColor(QPalette::Text, Colors::primaryText);
    palette.setColor(QPalette::PlaceholderText, Colors::tertiaryText);
    return palette;
}

} // namespace

/// A dialog, because tiling desktops don't move dialogs.
FieldWindow::FieldWindow(const InlineNameField::Setup &setup)
    : QWidget(nullptr, Qt::Dialog | Qt::WindowStaysOnTopHint | Qt::WindowTitleHint |
                           Qt::WindowCloseButtonHint),
      m_field(new TextField(setup.initial, this)), m_commitsOnBlur(setup.commitsOnBlur) {
    setWindowTitle(setup.title);
    setPalette(dialogPalette());
    m_field->setAccessibleName(setup.title);
    m_field->setPlaceholderText(setup.placeholder);
    m_field->setFont(Typography::text(Typography::nameSize));
    m_field->selectAll();
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(fieldMargin, fieldMargin, fieldMargin, fieldMargin);
    layout->addWidget(m_field);
    connect(m_field, &TextField::typed, this, [this] { emit edited(m_field->typedText()); });
    connect(m_field, &TextField::returnTyped, this, &FieldWindow::commitText);
    connect(m_field, &TextField::escapeTyped, this, [this] { settle(&FieldWindow::cancel); });
}

void FieldWindow::openBelow(const QRect &panel) {
    setFixedSize(windowWidth, sizeHint().height());
    placeBelow(panel);
    show();
    bringToFront();
    m_field->setFocus();
}

void FieldWindow::makeWayFor(const QRect &panel) {
    if (frameGeometry().intersects(panel)) {
        placeBelow(panel);
    }
}

void FieldWindow::bringToFront() {
    raise();
    activateWindow();
}

/// Keeps the whole window on the screen, with the title bar that the desktop adds.
void FieldWindow::placeBelow(const QRect &panel) {
    const QScreen *display = QGuiApplication::screenAt(panel.center());
    const QRect bounds = (display != nullptr ? display : screen())->geometry();
    const QPoint lowest(bounds.right() - width(), bounds.bottom() - height() - titleHeight);
    const QPoint place(panel.center().x() - width() / 2, panel.bottom() + panelDistance);
    move(std::max(bounds.left(), std::min(place.x(), lowest.x())),
         std::max(bounds.top(), std::min(place.y(), lowest.y())));
}

/// The field's own menu doesn't count as a loss of the keyboard: it leaves the window active.
void FieldWindow::changeEvent(QEvent *event) {
    QWidget::changeEvent(event);
    if (event->type() != QEvent::ActivationChange) {
        return;
    }
    if (isActiveWindow()) {
        m_hadKeyboard = true;
    } else if (m_hadKeyboard && m_commitsOnBlur && isVisible()) {
        commitText();
    }
}

void FieldWindow::closeEvent(QCloseEvent *event) {
    QWidget::closeEvent(event);
    settle(&FieldWindow::cancel);
}

void FieldWindow::commitText() {
    settle(&FieldWindow::commit);
}

/// Sends the outcome in a later turn of the event loop, when no function of this window, which a
/// slot may delete, is on the stack.
void FieldWindow::settle(void (FieldWindow::*outcome)()) {
    if (std::exchange(m_isSettled, true)) {
        return;
    }
    hide();
    QMetaObject::invokeMethod(this, outcome, Qt::QueuedConnection);
}

} // namespace morvane

#include "moc_FieldWindow.cpp"
