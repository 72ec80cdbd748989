#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QList>
#include <QRect>

/// JSON as compositors tell of their windows. Pure functions.
namespace morvane::CompositorJson {

/// The objects of a text that is a list of them; none of anything else.
QList<QJsonObject> objectsOf(const QByteArray &text);

/// A rectangle of the layout, whose numbers are of 16 bits like an X server's, whatever is told.
QRect layoutRect(double x, double y, double width, double height);

} // namespace morvane::CompositorJson
