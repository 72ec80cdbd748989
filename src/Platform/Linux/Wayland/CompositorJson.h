#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QList>
#include <QRect>

/// Reads the JSON in which compositors describe their windows. Pure functions.
namespace morvane::CompositorJson {

/// The objects of a JSON list; empty if the text is anything else.
QList<QJsonObject> objectsOf(const QByteArray &text);

/// A rectangle of the layout. Clamps the numbers to 16 bits, the range of an X server's.
QRect layoutRect(double x, double y, double width, double height);

} // namespace morvane::CompositorJson
