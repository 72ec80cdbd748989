#include "Platform/Linux/Desktop/SecretService.h"

#include "Platform/PrivateBusTest.h"
#include "Support/Printing.h"

#include <QDBusVariant>

namespace morvane {
namespace {

using Paths = QList<QDBusObjectPath>;

const QString root = "/org/freedesktop/secrets";

QVariant variant(const QVariant &value) {
    return QVariant::fromValue(QDBusVariant(value));
}

/// A secret in the form in which the service hands it out.
QVariant secretOf(const QDBusObjectPath &session, const QByteArray &value) {
    QDBusArgument result;
    result.beginStructure();
    result << session << QByteArray() << value << QStringLiteral("text/plain");
    result.endStructure();
    return QVariant::fromValue(result);
}

/// A keyring with two collections, the second of which has the agent's items.
class Keyring : public BusService {
public:
    /// Takes the secret of each item; a locked item has none.
    Keyring(const QDBusConnection &bus, const QList<std::optional<QByteArray>> &secrets)
        : BusService(bus, root, "org.freedesktop.secrets") {
        const QString session = root + "/collection/session";
        const QString login = root + "/collection/login";
        const QDBusObjectPath exchange(root + "/session/s1");
        Paths items;
        for (const auto &secret : secrets) {
            const QString item = login + "/" + QString::number(items.size());
            items << QDBusObjectPath(item);
            answers[item + " Get(org.freedesktop.Secret.Item,Locked)"] = {variant(!secret)};
            answers[item + " GetSecret(" + exchange.path() + ")"] = {
                secretOf(exchange, secret.value_or("locked"))};
        }
        answers[root + " Get(org.freedesktop.Secret.Service,Collections)"] = {
            variant(QVariant::fromValue(Paths{QDBusObjectPath(session), QDBusObjectPath(login)}))};
        answers[session + " SearchItems(service=agent)"] = {QVariant::fromValue(Paths())};
        answers[login + " SearchItems(service=agent)"] = {QVariant::fromValue(items)};
        answers[root + " OpenSession(plain,)"] = {variant(""), QVariant::fromValue(exchange)};
    }

    bool handleMessage(const QDBusMessage &message, const QDBusConnection &bus) override {
        message.setDelayedReply(message.member() == silentAt);
        return message.member() == silentAt || BusService::handleMessage(message, bus);
    }

    QString silentAt; ///< the call that is never answered
};

class SecretServiceTest : public PrivateBusTest {
protected:
    /// What the program is told; as in the program, another thread asks.
    SecretStore::Answer secret(Seconds limit = Seconds(30)) {
        return onAnotherThread(
            [&] { return SecretService(connection("program")).secret("agent", limit); });
    }
};

TEST_F(SecretServiceTest, FindsTheServicesSecretAmongOthers) {
    const Keyring keyring(connection("keyring"), {std::nullopt, "the secret", "another"});
    const auto answer = secret();
    ASSERT_TRUE(std::holds_alternative<QByteArray>(answer));
    EXPECT_EQ(std::get<QByteArray>(answer), "the secret");
    EXPECT_TRUE(becomesTrue([&] { return keyring.asked.last() == root + "/session/s1 Close()"; }));
}

TEST_F(SecretServiceTest, LeavesLockedWhatIsLocked) {
    const Keyring keyring(connection("keyring"), {std::nullopt});
    EXPECT_TRUE(std::holds_alternative<SecretStore::Withheld>(secret()));
    // No call that could open a dialog, nor one that would lead to it.
    for (const char *dialog : {"Unlock", "Prompt", "OpenSession", "GetSecret"}) {
        EXPECT_FALSE(keyring.asked.join('\n').contains(dialog)) << dialog;
    }
}

TEST_F(SecretServiceTest, TellsWhatIsMissingFromWhatDoesNotAnswer) {
    EXPECT_TRUE(std::holds_alternative<SecretStore::Missing>(secret()));
    {
        const Keyring empty(connection("keyring"), {});
        EXPECT_TRUE(std::holds_alternative<SecretStore::Missing>(secret()));
    }
    for (const char *member : {"SearchItems", "GetSecret"}) {
        Keyring hanging(connection("keyring"), {"secret"});
        hanging.silentAt = member;
        EXPECT_TRUE(std::holds_alternative<SecretStore::Withheld>(secret(Seconds(0.3)))) << member;
    }
}

} // namespace
} // namespace morvane
