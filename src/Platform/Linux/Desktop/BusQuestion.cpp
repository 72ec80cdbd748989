#include "Platform/Linux/Desktop/BusQuestion.h"

#include <QDBusPendingCallWatcher>

#include <utility>

namespace morvane::BusQuestion {

void ask(const QDBusConnection &bus, const QDBusMessage &call, QObject *context, Answered answered,
         int limit) {
    auto *watcher = new QDBusPendingCallWatcher(bus.asyncCall(call, limit), context);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, context,
                     [watcher, answered = std::move(answered)] {
                         watcher->deleteLater();
                         answered(watcher->reply());
                     });
}

} // namespace morvane::BusQuestion
