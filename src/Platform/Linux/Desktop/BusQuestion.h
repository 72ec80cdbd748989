#pragma once

#include <QDBusConnection>
#include <QDBusMessage>

#include <functional>

class QObject;

namespace morvane::BusQuestion {

using Answered = std::function<void(const QDBusMessage &reply)>;

/// Calls a method over the message bus. `answered` gets the reply or the error once, after this
/// call has returned, unless the context is gone by then. The limit is in milliseconds; -1 is the
/// bus's default. Main thread, which doesn't wait for it.
void ask(const QDBusConnection &bus, const QDBusMessage &call, QObject *context, Answered answered,
         int limit = -1);

} // namespace morvane::BusQuestion
