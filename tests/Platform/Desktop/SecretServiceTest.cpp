#include "Platform/Linux/Desktop/SecretService.h"

#include "Platform/PrivateBusTest.h"
#include "Support/Printing.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusVariant>

namespace morvane {
namespace {

using Attributes = QMap<QString, QString>;
using Paths = QList<QDBusObjectPath>;

const QString root = "/org/freedesktop/secrets";

/// As the service hands it out.
QVariant secretOf(const QDBusObjectPath &session, const QByteArray &value) {
    QDBusArgument result;
    result.beginStructure();
    result << session << QByteArray() << value << QStringLiteral("text/plain");
    result.endStructure();
    return QVariant::fromValue(result);
}

struct Item {
    QString service;
    QByteArray value;
    bool isLocked = false;
};

/// A keyring with two collections, the second of which holds the items.
class Keyring : public BusService {
public:
    Keyring(const QDBusConnection &bus, QList<Item> items)
        : BusService(bus, root, "org.freedesktop.secrets"), m_items(std::move(items)) {
        qDBusRegisterMetaType<Attributes>();
    }

    bool handleMessage(const QDBusMessage &message, const QDBusConnection &bus) override {
        asked << message.member();
        if (message.member() == silentAt) {
            message.setDelayedReply(true);
            return true;
        }
        if (message.member() == "Close") {
            return true;
        }
        const auto answers = answer(message);
        return bus.send(answers.isEmpty()
                            ? message.createErrorReply(QDBusError::InvalidArgs, "none of ours")
                            : message.createReply(answers));
    }

    QStringList asked;
    QString silentAt; ///< what is never answered

private:
    QVariantList answer(const QDBusMessage &message) const {
        const QString what = message.member();
        if (what == "SearchItems") {
            return {QVariant::fromValue(itemsOf(message))};
        }
        if (what == "OpenSession") {
            return {QVariant::fromValue(QDBusVariant("")),
                    QVariant::fromValue(QDBusObjectPath(root + "/session/s1"))};
        }
        if (what == "GetSecret") {
            const auto session = message.arguments().first().value<QDBusObjectPath>();
            return {secretOf(session, itemAt(message).value)};
        }
        if (what == "Get" && message.arguments().last() == "Collections") {
            const Paths paths{QDBusObjectPath(root + "/collection/session"),
                              QDBusObjectPath(root + "/collection/login")};
            return {QVariant::fromValue(QDBusVariant(QVariant::fromValue(paths)))};
        }
        if (what == "Get" && message.arguments().last() == "Locked") {
            return {QVariant::fromValue(QDBusVariant(itemAt(message).isLocked))};
        }
        return {};
    }

    Paths itemsOf(const QDBusMessage &message) const {
        const auto wanted = qdbus_cast<Attributes>(message.arguments().first());
        Paths result;
        for (qsizetype index = 0; index < m_items.size(); ++index) {
            if (message.path().endsWith("/login") &&
                wanted.value("service") == m_items[index].service) {
                result << QDBusObjectPath(QStringLiteral("%1/%2").arg(message.path()).arg(index));
            }
        }
        return result;
    }

    Item itemAt(const QDBusMessage &message) const {
        return m_items[message.path().section('/', -1).toInt()];
    }

    QList<Item> m_items;
};

class SecretServiceTest : public PrivateBusTest {
protected:
    /// What the program is told, from a thread of its own as in the program.
    SecretStore::Answer secret(Seconds limit = Seconds(30)) {
        return onAnotherThread(
            [&] { return SecretService(connection("program")).secret("agent", limit); });
    }
};

TEST_F(SecretServiceTest, FindsTheServicesSecretAmongOthers) {
    Keyring keyring(connection("keyring"), {{"other", "no"},
                                            {"agent", "locked", true},
                                            {"agent", "the secret"},
                                            {"agent", "another"}});
    const auto answer = secret();
    ASSERT_TRUE(std::holds_alternative<QByteArray>(answer));
    EXPECT_EQ(std::get<QByteArray>(answer), "the secret");
    EXPECT_TRUE(becomesTrue([&] { return keyring.asked.contains("Close"); }));
}

TEST_F(SecretServiceTest, LeavesLockedWhatIsLocked) {
    const Keyring keyring(connection("keyring"), {{"agent", "locked", true}});
    EXPECT_TRUE(std::holds_alternative<SecretStore::Withheld>(secret()));
    // Nothing that could bring a question before the person, nor what would lead to one.
    for (const char *dialog : {"Unlock", "Prompt", "OpenSession", "GetSecret"}) {
        EXPECT_FALSE(keyring.asked.contains(dialog)) << dialog;
    }
}

TEST_F(SecretServiceTest, TellsWhatIsMissingFromWhatDoesNotAnswer) {
    EXPECT_TRUE(std::holds_alternative<SecretStore::Missing>(secret()));
    {
        const Keyring empty(connection("keyring"), {{"other", "no"}});
        EXPECT_TRUE(std::holds_alternative<SecretStore::Missing>(secret()));
    }
    for (const char *member : {"SearchItems", "GetSecret"}) {
        Keyring hanging(connection("keyring"), {{"agent", "secret"}});
        hanging.silentAt = member;
        EXPECT_TRUE(std::holds_alternative<SecretStore::Withheld>(secret(Seconds(0.3)))) << member;
    }
}

} // namespace
} // namespace morvane
