#include "Platform/Linux/Wayland/CompositorJson.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>

namespace morvane::CompositorJson {

QList<QJsonObject> objectsOf(const QByteArray &text) {
    QList<QJsonObject> result;
    const QJsonArray list = QJsonDocument::fromJson(text).array();
    for (const auto &item : list) {
        result.append(item.toObject());
    }
    return result;
}

QRect layoutRect(double x, double y, double width, double height) {
    const auto bounded = [](double number) {
        return static_cast<int>(std::clamp(number, -32768.0, 32767.0));
    };
    return {bounded(x), bounded(y), bounded(width), bounded(height)};
}

} // namespace morvane::CompositorJson
