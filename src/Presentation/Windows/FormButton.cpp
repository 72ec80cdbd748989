#include "Presentation/Windows/FormButton.h"

#include "Presentation/Style/ButtonKeys.h"
#include "Presentation/Style/Colors.h"
#include "Presentation/Style/FocusRing.h"
#include "Presentation/Style/Typography.h"

#include <QMouseEvent>
#include <QPainter>

namespace morvane {

namespace {

constexpr int formButtonHeight = 26;
constexpr int sidePadding = 13;
constexpr double buttonCorner = 6;

} // namespace

FormButton::FormButton(const QString &text, Role role, QWidget *parent)
    : QPushButton(text, parent), m_role(role) {
    setFont(Typography::text(Typography::bodySize, QFont::Medium));
    setAttribute(Qt::WA_Hover);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize FormButton::sizeHint() const {
    const QSize text = fontMetrics().size(Qt::TextShowMnemonic, this->text());
    return {text.width() + 2 * sidePadding, formButtonHeight};
}

void FormButton::keyPressEvent(QKeyEvent *event) {
    if (auto space = ButtonKeys::asSpace(*event)) {
        QPushButton::keyPressEvent(&*space);
    } else {
        QPushButton::keyPressEvent(event);
    }
}

void FormButton::keyReleaseEvent(QKeyEvent *event) {
    if (auto space = ButtonKeys::asSpace(*event)) {
        QPushButton::keyReleaseEvent(&*space);
    } else {
        QPushButton::keyReleaseEvent(event);
    }
}

/// Ignores the second press of a double click: the first may have changed the button or put another
/// in its place.
void FormButton::mouseDoubleClickEvent(QMouseEvent *event) {
    event->accept();
}

QColor FormButton::ground() const {
    if (m_role == Role::primary) {
        return isDown() ? Colors::switchOn.darker(120) : Colors::switchOn;
    }
    return Colors::white(isDown() ? 0.22 : underMouse() ? 0.17 : 0.12);
}

void FormButton::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(isEnabled() ? 1 : Colors::waiting);
    painter.setPen(Qt::NoPen);
    painter.setBrush(ground());
    painter.drawRoundedRect(rect(), buttonCorner, buttonCorner);
    if (hasFocus()) {
        paintFocusRing(painter, rect(), buttonCorner, Colors::primaryText);
    }
    painter.setPen(m_role == Role::destructive ? Colors::denyAccent : Colors::primaryText);
    painter.drawText(rect(), Qt::AlignCenter | Qt::TextShowMnemonic, text());
}

} // namespace morvane

#include "moc_FormButton.cpp"
