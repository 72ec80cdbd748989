#include "Presentation/Panel/ContextGauge.h"

#include "Presentation/Style/Colors.h"

#include <QPainter>

#include <algorithm>

namespace morvane {

namespace {

constexpr QSize gaugeSize(84, 3);
constexpr double standardContext = 200'000;
constexpr double shortestGauge = 4;
constexpr double gaugeRadius = 1.5;

} // namespace

ContextGauge::ContextGauge(QWidget *parent) : QWidget(parent) {
    setFixedSize(gaugeSize);
}

void ContextGauge::setTokens(int tokens, const QColor &color) {
    m_share = std::clamp(tokens / standardContext, 0.0, 1.0);
    m_color = color;
    update();
}

void ContextGauge::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Colors::white(0.12));
    painter.drawRoundedRect(rect(), gaugeRadius, gaugeRadius);
    QRectF fill = rect();
    fill.setWidth(std::max(shortestGauge, fill.width() * m_share));
    painter.setBrush(m_color);
    painter.drawRoundedRect(fill, gaugeRadius, gaugeRadius);
}

} // namespace morvane

#include "moc_ContextGauge.cpp"
