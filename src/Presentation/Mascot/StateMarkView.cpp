#include "Presentation/Mascot/StateMarkView.h"

#include "Presentation/Mascot/StateMark.h"
#include "Presentation/Style/StateLook.h"

#include <QPainter>

#include <cmath>

namespace morvane {

namespace {

constexpr double pixel = 2; // points

} // namespace

StateMarkView::StateMarkView(QWidget *parent) : QWidget(parent) {
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    hide();
}

void StateMarkView::setState(std::optional<SessionState> state) {
    if (state != m_state) {
        m_state = state;
        setVisible(!StateMark::rows(state).isEmpty());
        update();
    }
}

QSize StateMarkView::sizeHint() const {
    constexpr int side = static_cast<int>(pixel * StateMark::side);
    return {side, side};
}

/// Scales each square to whole device pixels, since the mark is recognised by its shape.
void StateMarkView::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    const QTransform toDevice = painter.deviceTransform();
    const double square = std::max(1.0, std::floor(pixel * toDevice.m11()));
    const QPointF middle = toDevice.mapRect(QRectF(rect())).center();
    const double half = square * StateMark::side / 2;
    painter.setTransform(toDevice.inverted(), true);
    painter.translate(std::round(middle.x() - half), std::round(middle.y() - half));
    painter.scale(square, square);
    painter.fillPath(StateMark::shape(StateMark::rows(m_state)), StateLook::of(m_state).mascot);
}

} // namespace morvane

#include "moc_StateMarkView.cpp"
