#include "Platform/Linux/BoundedTools.h"
#include "Platform/Linux/LoadedHttpsClient.h"
#include "Platform/LoopbackServer.h"
#include "Support/Printing.h"
#include "Support/UpdateWorld.h"
#include "Support/WaitUntil.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <gtest/gtest.h>

namespace morvane {
namespace {

using Phase = UpdateManager::Phase;

/// An update server on this machine that can be made to fail or to lie, and real packages, signed
/// as the maker signs them.
class UpdateServerTest : public testing::Test, protected UpdateWorld {
protected:
    void SetUp() override {
        if (!LoopbackCertificate::canBeMade() ||
            QStandardPaths::findExecutable("dpkg-deb").isEmpty()) {
            GTEST_SKIP() << "openssl and dpkg-deb are needed";
        }
        certificate.emplace(home);
        certificate->giveTo(server);
        certificate->trust();
        serve(server, asked, [this](const QByteArray &line) {
            return line.contains("feed.json") ? feedAnswer : packageAnswer;
        });
        run({"openssl", "genpkey", "-algorithm", "ed25519", "-out", home.path("maker.pem")});
        const QByteArray told =
            run({"openssl", "pkey", "-in", home.path("maker.pem"), "-pubout", "-outform", "DER"});
        https.emplace(NETWORK_LIBRARY, scheduler, background);
        updates.emplace(defaults, means(*https, tools),
                        UpdateSource{urlOf(server, "/deb/feed.json"), told.right(32), "1.0"});
        updates->setAutomaticChecks(false);
        updates->start();
        offer("1.1");
    }

    static QByteArray run(const QStringList &command) {
        ChildProcess child(command, QProcessEnvironment::systemEnvironment());
        EXPECT_EQ(child.wait(), 0) << qPrintable(command.join(' '));
        return child.output();
    }

    QString makePackage(const QByteArray &version, const QByteArray &name = "morvane") const {
        home.write("tree/DEBIAN/control", "Package: " + name + "\nVersion: 1:" + version +
                                              "-1\nArchitecture: all\nMaintainer: Me "
                                              "<me@example.org>\nDescription: Test\n");
        const QString path = home.path("morvane_" + version + ".deb");
        run({"dpkg-deb", "--build", home.path("tree"), path});
        return path;
    }

    /// The feed that the maker's script prints for a package.
    QJsonObject sign(const QString &package) const {
        const QString notes = home.write("notes.txt", "Says \"more\".\n\tC:\\ too\n");
        return QJsonDocument::fromJson(
                   run({SCRIPTS "/sign-release", home.path("maker.pem"), package, notes}))
            .object();
    }

    /// Has the server offer this version, with a true feed.
    void offer(const QByteArray &version) {
        const QString path = makePackage(version);
        package = home.read("morvane_" + version + ".deb");
        feed = sign(path);
        feedAnswer = http("200 OK", QJsonDocument(feed).toJson());
        packageAnswer = http("200 OK", package);
    }

    bool settles() {
        return becomesTrue([&] {
            pass(Seconds(0));
            return updates->phase() != Phase::checking && updates->phase() != Phase::downloading;
        });
    }

    Phase check() {
        updates->checkForUpdates();
        EXPECT_TRUE(settles());
        return updates->phase();
    }

    /// Serves `feed` as it is now, accepts the offer, and yields why the update fails.
    QString refusal() {
        feedAnswer = http("200 OK", QJsonDocument(feed).toJson());
        EXPECT_EQ(check(), Phase::offered);
        updates->download();
        EXPECT_TRUE(settles());
        EXPECT_EQ(updates->phase(), Phase::failed);
        pass(Seconds(0));
        EXPECT_FALSE(QFile::exists(home.path(".cache/morvane")));
        return updates->failure();
    }

    QSslServer server;
    QByteArray asked;
    QByteArray feedAnswer;
    QByteArray packageAnswer;
    QByteArray package;
    QJsonObject feed;
    std::optional<LoopbackCertificate> certificate;
    BoundedTools tools{scheduler};
    std::optional<LoadedHttpsClient> https;
    std::optional<UpdateManager> updates;
};

TEST_F(UpdateServerTest, HandsOverWhatTheMakerHasSignedAndThePersonWanted) {
    EXPECT_EQ(check(), Phase::offered);
    EXPECT_EQ(updates->offer().version, "1.1");
    EXPECT_EQ(updates->offer().notes, "Says \"more\".\n⇥   C:\\ too");
    EXPECT_FALSE(asked.contains(".deb"));
    EXPECT_TRUE(asked.toLower().contains("accept-language: *\r\n"));
    EXPECT_TRUE(installer.opened.isEmpty());

    updates->download();
    EXPECT_FALSE(updates->canCheck());
    ASSERT_TRUE(settles());
    ASSERT_EQ(updates->phase(), Phase::handedOver) << qPrintable(updates->failure());
    const QString path = home.path(".cache/morvane/update/morvane_1.1.deb");
    EXPECT_EQ(installer.opened, QStringList{path});
    EXPECT_EQ(home.read(".cache/morvane/update/morvane_1.1.deb"), package);
    EXPECT_EQ(home.mode(".cache/morvane/update/morvane_1.1.deb"), 0600U);
    EXPECT_EQ(home.mode(".cache/morvane/update"), 0700U);
    updates->dismiss();
    pass(Seconds(0));
    EXPECT_TRUE(QFile::exists(path)) << "the installer still needs it";
}

TEST_F(UpdateServerTest, DiscardsWhatIsNotTheMakers) {
    const QString notSigned = "The update isn't signed with Morvane's key. It was discarded.";
    const QString notWhole = "The update isn't as long as it should be. It was discarded.";
    const QJsonObject right = feed;
    feed["signature"] = QString::fromLatin1(QByteArray(64, '\1').toBase64());
    EXPECT_EQ(refusal(), notSigned);
    feed = right;
    packageAnswer[packageAnswer.size() - 9] ^= 1;
    EXPECT_EQ(refusal(), notSigned);

    packageAnswer = http("200 OK", package.chopped(1));
    EXPECT_EQ(refusal(), notWhole);
    packageAnswer = "HTTP/1.1 200 OK\r\n\r\n" + package + QByteArray(300'000, ' ');
    EXPECT_EQ(refusal(), notWhole); // it never ends
}

TEST_F(UpdateServerTest, GoesBackToNoOlderVersion) {
    offer("1.0");
    EXPECT_EQ(check(), Phase::upToDate);

    // Properly signed, but not what the feed says it is.
    const QString notIt =
        "The package isn't the version of Morvane that it was said to be. It was discarded.";
    feed["version"] = "1.1";
    EXPECT_EQ(refusal(), notIt);
    const QString path = makePackage("1.1", "other");
    const QByteArray other = home.read("morvane_1.1.deb");
    feed["size"] = other.size();
    feed["signature"] = QString::fromLatin1(run({"openssl", "pkeyutl", "-sign", "-rawin", "-inkey",
                                                 home.path("maker.pem"), "-in", path})
                                                .toBase64());
    packageAnswer = http("200 OK", other);
    EXPECT_EQ(refusal(), notIt);
    EXPECT_TRUE(installer.opened.isEmpty());
}

TEST_F(UpdateServerTest, TheMakersScriptSignsNothingThatNoBuildTakes) {
    const QString key = home.path("maker.pem");
    const QString good = makePackage("1.2");
    const QString otherKey = home.path("other.pem");
    run({"openssl", "genpkey", "-algorithm", "ed448", "-out", otherKey});
    for (const QStringList &arguments :
         {QStringList{otherKey, good}, QStringList{key, makePackage("1.2~rc1")},
          QStringList{key, makePackage("1.3", "other")},
          QStringList{key, good, home.path("nowhere.txt")},
          QStringList{key, good, home.write("latin1.txt", "gr\xfc\xdf")},
          QStringList{key, good, home.write("long.txt", QByteArray(1 << 16, 'x'))}}) {
        ChildProcess script(QStringList{SCRIPTS "/sign-release"} + arguments,
                            QProcessEnvironment::systemEnvironment());
        EXPECT_EQ(script.wait(), 1) << qPrintable(arguments.join(' '));
        EXPECT_EQ(script.output(), "") << qPrintable(arguments.join(' '));
    }
}

TEST_F(UpdateServerTest, GoesNowhereElse) {
    const QString elsewhere =
        "Morvane's server points to another place, and Morvane doesn't go there.";
    packageAnswer = http("302 Found", "", "Location: /other\r\n");
    EXPECT_EQ(refusal(), elsewhere);
    feedAnswer = packageAnswer;
    EXPECT_EQ(check(), Phase::failed);
    EXPECT_EQ(updates->failure(), elsewhere);
    EXPECT_FALSE(asked.contains("/other"));
}

TEST_F(UpdateServerTest, LeavesNothingToWhoeverChangesTheirMind) {
    check();
    updates->download();
    updates->dismiss();
    EXPECT_TRUE(updates->canCheck());
    check();
    updates->download();
    EXPECT_TRUE(becomesTrue([&] {
        if (!asked.contains(".deb")) {
            pass(Seconds(0)); // the server's proxy is looked up in the background, too
        }
        return asked.contains(".deb") && background.waiting() > 0;
    })) << "it is there";
    updates->dismiss();
    // The next check waits until the dismissed package has been examined and removed.
    asked.clear();
    updates->checkForUpdates();
    EXPECT_EQ(updates->phase(), Phase::checking);
    EXPECT_EQ(asked, "");
    EXPECT_TRUE(settles());
    EXPECT_EQ(updates->phase(), Phase::offered);
    pass(Seconds(0));
    EXPECT_FALSE(QFile::exists(home.path(".cache/morvane")));
    EXPECT_TRUE(installer.opened.isEmpty());
}

} // namespace
} // namespace morvane
