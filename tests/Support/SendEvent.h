#pragma once

#include <QCoreApplication>
#include <QEvent>

namespace morvane {

/// Gives a widget or window an event as Qt would, at once.
inline void send(QObject &receiver, QEvent &&event) {
    QCoreApplication::sendEvent(&receiver, &event);
}

} // namespace morvane
