#include "Platform/Linux/Desktop/SecretService.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QDeadlineTimer>

#include <chrono>
#include <optional>

namespace morvane {

namespace {

using Attributes = QMap<QString, QString>;
using Paths = QList<QDBusObjectPath>;

const QString name = QStringLiteral("org.freedesktop.secrets");
const QString root = QStringLiteral("/org/freedesktop/secrets");
const QString serviceInterface = QStringLiteral("org.freedesktop.Secret.Service");
const QString collectionInterface = QStringLiteral("org.freedesktop.Secret.Collection");
const QString itemInterface = QStringLiteral("org.freedesktop.Secret.Item");
const QString sessionInterface = QStringLiteral("org.freedesktop.Secret.Session");

/// More than anybody has; the time is limited as well.
constexpr qsizetype mostPaths = 32;

/// Asks one question after the other, all within one time limit.
class Questions {
public:
    Questions(const QDBusConnection &bus, Seconds limit)
        : m_bus(bus), m_deadline(std::chrono::ceil<std::chrono::milliseconds>(limit)) {}

    /// The bus may give up a few milliseconds before our own clock does.
    bool ranOut() const { return m_deadline.remainingTime() <= 50; }

    /// The answer's arguments; none unless it has this signature.
    std::optional<QVariantList> ask(const QString &path, const QString &interface,
                                    const QString &member, const QVariantList &arguments,
                                    QLatin1String signature) const {
        const int left = static_cast<int>(m_deadline.remainingTime());
        if (left <= 0) {
            return std::nullopt;
        }
        const QDBusMessage reply =
            m_bus.call(message(path, interface, member, arguments), QDBus::Block, left);
        return reply.type() == QDBusMessage::ReplyMessage && reply.signature() == signature
                   ? std::optional(reply.arguments())
                   : std::nullopt;
    }

    std::optional<QVariant> property(const QString &path, const QString &interface,
                                     const QString &property) const {
        const auto answer = ask(path, QStringLiteral("org.freedesktop.DBus.Properties"),
                                QStringLiteral("Get"), {interface, property}, QLatin1String("v"));
        return answer ? std::optional(qvariant_cast<QDBusVariant>(answer->first()).variant())
                      : std::nullopt;
    }

    /// Makes a call and ignores its answer.
    void tell(const QString &path, const QString &interface, const QString &member) const {
        m_bus.send(message(path, interface, member, {}));
    }

private:
    static QDBusMessage message(const QString &path, const QString &interface,
                                const QString &member, const QVariantList &arguments) {
        QDBusMessage result = QDBusMessage::createMethodCall(name, path, interface, member);
        result.setArguments(arguments);
        // A question is no reason to start the service.
        result.setAutoStartService(false);
        return result;
    }

    const QDBusConnection m_bus;
    const QDeadlineTimer m_deadline;
};

Paths pathsIn(const QVariant &value) {
    return qdbus_cast<Paths>(value).mid(0, mostPaths);
}

/// The secret of an unlocked item.
std::optional<QByteArray> secretOf(const QString &item, const Questions &questions) {
    const auto opened =
        questions.ask(root, serviceInterface, QStringLiteral("OpenSession"),
                      {QStringLiteral("plain"), QVariant::fromValue(QDBusVariant(QString()))},
                      QLatin1String("vo"));
    if (!opened) {
        return std::nullopt;
    }
    const auto session = qvariant_cast<QDBusObjectPath>(opened->last());
    const auto answer = questions.ask(item, itemInterface, QStringLiteral("GetSecret"),
                                      {QVariant::fromValue(session)}, QLatin1String("(oayays)"));
    questions.tell(session.path(), sessionInterface, QStringLiteral("Close"));
    if (!answer) {
        return std::nullopt;
    }
    const auto structure = qvariant_cast<QDBusArgument>(answer->first());
    QDBusObjectPath owner;
    QByteArray parameters;
    QByteArray value;
    structure.beginStructure();
    structure >> owner >> parameters >> value;
    return value;
}

} // namespace

/// Searches each collection: with all of them locked, a search of the whole service makes some
/// password safes ask for the person's password.
SecretStore::Answer SecretService::secret(const QString &service, Seconds limit) {
    qDBusRegisterMetaType<Attributes>();
    const QVariant wanted = QVariant::fromValue(Attributes{{QStringLiteral("service"), service}});
    const Questions questions(m_bus, limit);
    bool foundLocked = false;
    const auto collections =
        questions.property(root, serviceInterface, QStringLiteral("Collections"));
    for (const QDBusObjectPath &collection : pathsIn(collections.value_or(QVariant()))) {
        const auto found =
            questions.ask(collection.path(), collectionInterface, QStringLiteral("SearchItems"),
                          {wanted}, QLatin1String("ao"));
        for (const QDBusObjectPath &item : pathsIn(found ? found->first() : QVariant())) {
            const auto locked =
                questions.property(item.path(), itemInterface, QStringLiteral("Locked"));
            foundLocked |= locked == QVariant(true);
            if (const auto secret =
                    locked == QVariant(false) ? secretOf(item.path(), questions) : std::nullopt) {
                return *secret;
            }
        }
    }
    if (foundLocked || questions.ranOut()) {
        return Withheld{};
    }
    return Missing{};
}

} // namespace morvane
