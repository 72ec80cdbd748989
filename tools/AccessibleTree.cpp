#include "AccessibleTree.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVariant>

#include <algorithm>
#include <functional>
#include <utility>

namespace morvane {

namespace {

constexpr int callLimit = 5'000; // milliseconds
constexpr unsigned sensitiveBit = 24;
constexpr unsigned showingBit = 25;
constexpr unsigned screenCoordinates = 0;
constexpr const char *accessible = "org.a11y.atspi.Accessible";

bool isAnswered(const QDBusMessage &reply) {
    return reply.type() == QDBusMessage::ReplyMessage && !reply.arguments().isEmpty();
}

} // namespace

AccessibleTree::AccessibleTree(QString application) : m_application(std::move(application)) {}

QList<AccessibleTree::Found> AccessibleTree::find(const QString &role, const QString &name,
                                                  Naming naming) {
    QList<Found> result;
    if (!m_bus.isConnected() && !connect()) {
        return result;
    }
    const Object registry{QStringLiteral("org.a11y.atspi.Registry"),
                          QStringLiteral("/org/a11y/atspi/accessible/root")};
    for (const Object &application : children(registry)) {
        if (this->name(application) == m_application) {
            result += findBelow(application, role, name, naming);
        }
    }
    std::ranges::sort(result, std::greater(), [](const Found &found) {
        return found.extents.width() * found.extents.height();
    });
    return result;
}

bool AccessibleTree::act(const Found &found, const QString &action) const {
    constexpr const char *interface = "org.a11y.atspi.Action";
    const QDBusMessage reply = call(found.object, interface, "GetActions");
    if (!isAnswered(reply)) {
        return false;
    }
    const auto list = reply.arguments().first().value<QDBusArgument>();
    int index = 0;
    for (list.beginArray(); !list.atEnd(); ++index) {
        QString name;
        QString description;
        QString key;
        list.beginStructure();
        list >> name >> description >> key;
        list.endStructure();
        if (name == action) {
            return isAnswered(call(found.object, interface, "DoAction", {index}));
        }
    }
    return false;
}

bool AccessibleTree::connect() {
    const QDBusMessage question = QDBusMessage::createMethodCall(
        QStringLiteral("org.a11y.Bus"), QStringLiteral("/org/a11y/bus"),
        QStringLiteral("org.a11y.Bus"), QStringLiteral("GetAddress"));
    const QDBusMessage reply =
        QDBusConnection::sessionBus().call(question, QDBus::Block, callLimit);
    if (!isAnswered(reply)) {
        return false;
    }
    m_bus = QDBusConnection::connectToBus(reply.arguments().first().toString(),
                                          QStringLiteral("accessibility"));
    return m_bus.isConnected();
}

QDBusMessage AccessibleTree::call(const Object &object, const char *interface, const char *method,
                                  const QVariantList &arguments) const {
    QDBusMessage message = QDBusMessage::createMethodCall(
        object.service, object.path, QLatin1String(interface), QLatin1String(method));
    message.setArguments(arguments);
    return m_bus.call(message, QDBus::Block, callLimit);
}

QString AccessibleTree::name(const Object &object) const {
    const QDBusMessage reply = call(object, "org.freedesktop.DBus.Properties", "Get",
                                    {QLatin1String(accessible), QStringLiteral("Name")});
    return isAnswered(reply) ? reply.arguments().first().value<QDBusVariant>().variant().toString()
                             : QString();
}

bool AccessibleTree::hasState(const Object &object, unsigned bit) const {
    const QDBusMessage reply = call(object, accessible, "GetState");
    if (!isAnswered(reply)) {
        return false;
    }
    const auto states = qdbus_cast<QList<uint>>(reply.arguments().first());
    return !states.isEmpty() && (states.first() & (1U << bit)) != 0;
}

bool AccessibleTree::hasRole(const Object &object, const QString &role) const {
    const QDBusMessage reply = call(object, accessible, "GetRoleName");
    const QString actual = isAnswered(reply) ? reply.arguments().first().toString() : QString();
    return actual == role || actual.endsWith(QLatin1Char(' ') + role);
}

QRect AccessibleTree::extents(const Object &object) const {
    const QDBusMessage reply =
        call(object, "org.a11y.atspi.Component", "GetExtents", {screenCoordinates});
    return isAnswered(reply) ? qdbus_cast<QRect>(reply.arguments().first()) : QRect();
}

QList<AccessibleTree::Object> AccessibleTree::children(const Object &object) const {
    const QDBusMessage reply = call(object, accessible, "GetChildren");
    QList<Object> result;
    if (!isAnswered(reply)) {
        return result;
    }
    const auto list = reply.arguments().first().value<QDBusArgument>();
    list.beginArray();
    while (!list.atEnd()) {
        Object child;
        QDBusObjectPath path;
        list.beginStructure();
        list >> child.service >> path;
        list.endStructure();
        child.path = path.path();
        result.append(child);
    }
    list.endArray();
    return result;
}

QList<AccessibleTree::Found> AccessibleTree::findBelow(const Object &parent, const QString &role,
                                                       const QString &name, Naming naming) const {
    QList<Found> result;
    for (const Object &child : children(parent)) {
        if (!hasState(child, showingBit)) {
            continue;
        }
        const QString actual = this->name(child);
        const bool isNamed =
            actual == name || (naming == Naming::beginning && actual.startsWith(name)) ||
            (naming == Naming::words && actual.startsWith(name + QLatin1Char(' ')));
        const bool isReady = role != QLatin1String("button") || hasState(child, sensitiveBit);
        if (isNamed && hasRole(child, role) && isReady) {
            result.append({child, actual, extents(child)});
        }
        result += findBelow(child, role, name, naming);
    }
    return result;
}

} // namespace morvane
