#include "Presentation/Style/DeviceCanvas.h"

#include <QTransform>

#include <algorithm>
#include <cmath>

namespace morvane {

namespace {

constexpr double lineShare = 0.11;

} // namespace

DeviceCanvas::DeviceCanvas(QPainter &painter, const QRectF &frame) : m_painter(painter) {
    m_painter.save();
    m_painter.setRenderHint(QPainter::Antialiasing);
    const QTransform toDevice = m_painter.deviceTransform();
    const QRectF place = toDevice.mapRect(frame);
    m_side = qRound(std::min(place.width(), place.height()));
    m_lineWidth = std::max(2, qRound(m_side * lineShare * 2)) / 2.0;
    m_painter.setTransform(toDevice.inverted(), true);
    m_painter.translate(qRound(place.center().x() - m_side / 2.0),
                        qRound(place.center().y() - m_side / 2.0));
}

double DeviceCanvas::line(double units) const {
    const bool fillsPairs = std::fmod(wholeWidth(), 2) == 0;
    return fillsPairs ? std::round(scale(units)) : std::floor(scale(units)) + 0.5;
}

double DeviceCanvas::edge(double units) const {
    return std::round(scale(units));
}

} // namespace morvane
