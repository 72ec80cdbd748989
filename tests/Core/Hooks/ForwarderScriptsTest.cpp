#include "Core/Hooks/ForwarderScripts.h"

#include "Support/TemporaryHome.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <gtest/gtest.h>

namespace morvane {
namespace {

/// Only some processors have a client.
bool hasClient() {
    return QFile::exists(":/templates/forwarder");
}

ForwarderScripts scripts(std::uint16_t port) {
    return {"the-token", port};
}

TEST(ForwarderScripts, PutsPortAndTokenIntoTheScript) {
    const TemporaryHome home;
    ASSERT_FALSE(scripts(40123).writeHookScript());
    const QByteArray script = home.read(".morvane/hook.sh");
    EXPECT_TRUE(script.startsWith("#!/bin/sh\n"));
    EXPECT_TRUE(script.contains("40123") && script.contains("the-token"));
    EXPECT_FALSE(script.contains("__PORT__") || script.contains("__TOKEN__"));
    EXPECT_EQ(home.read(".morvane/forwarder")
                  .startsWith("\x7f"
                              "ELF"),
              hasClient());

    const auto mode = [&](const QString &relative) {
        return QFileInfo(home.path(relative)).permissions() & QFile::Permissions(0x0777);
    };
    const QFile::Permissions readable =
        QFile::ReadGroup | QFile::ExeGroup | QFile::ReadOther | QFile::ExeOther;
    for (const auto *executable : {".morvane/hook.sh", ".morvane/forwarder"}) {
        if (!QFile::exists(home.path(QString::fromLatin1(executable))) && !hasClient()) {
            continue;
        }
        EXPECT_EQ(mode(QString::fromLatin1(executable)) & readable, readable) << executable;
        EXPECT_TRUE(QFileInfo(home.path(QString::fromLatin1(executable))).isExecutable());
    }
    EXPECT_EQ(mode(".morvane") & (readable | QFile::WriteGroup | QFile::WriteOther),
              QFile::Permissions());
}

TEST(ForwarderScripts, RewritesTheScriptButNotAClientThatIsTheSame) {
    if (!hasClient()) {
        GTEST_SKIP() << "this processor has none";
    }
    const TemporaryHome home;
    ASSERT_FALSE(scripts(1).writeHookScript());
    QFile client(home.path(".morvane/forwarder"));
    const QDateTime old = QDateTime::fromSecsSinceEpoch(1'000'000'000);
    ASSERT_TRUE(client.open(QIODevice::ReadWrite));
    ASSERT_TRUE(client.setFileTime(old, QFileDevice::FileModificationTime));
    client.close();
    ASSERT_FALSE(scripts(2).writeHookScript());
    EXPECT_TRUE(home.read(".morvane/hook.sh").contains("port=2\n"));
    EXPECT_EQ(QFileInfo(client).lastModified(), old);

    ASSERT_TRUE(client.open(QIODevice::WriteOnly));
    client.write("an older one");
    client.close();
    ASSERT_FALSE(scripts(2).writeHookScript());
    EXPECT_NE(home.read(".morvane/forwarder"), "an older one");

    client.setPermissions(QFile::ReadOwner);
    ASSERT_FALSE(scripts(2).writeHookScript());
    EXPECT_TRUE(QFileInfo(client.fileName()).isExecutable());
}

TEST(ForwarderScripts, ReplacesLinksInsteadOfFollowingThem) {
    const TemporaryHome home;
    ASSERT_FALSE(scripts(1).writeHookScript());
    const QByteArray client = home.read(".morvane/forwarder");
    for (const char *name : {".morvane/hook.sh", ".morvane/forwarder"}) {
        const QString other = home.write("other", client);
        QFile::remove(home.path(name));
        ASSERT_TRUE(QFile::link(other, home.path(name)));
        ASSERT_FALSE(scripts(2).writeHookScript());
        EXPECT_FALSE(QFileInfo(home.path(name)).isSymbolicLink());
        EXPECT_EQ(home.read("other"), client);
    }
}

TEST(ForwarderScripts, SaysWhatKeptItFromWriting) {
    const TemporaryHome home;
    home.write(".morvane");
    EXPECT_TRUE(scripts(1).writeHookScript());
    const auto missing = scripts(1).renderTemplate("other.sh");
    ASSERT_TRUE(missing.failure());
    EXPECT_EQ(missing.failure()->message, "other.sh.template missing from bundle");
}

} // namespace
} // namespace morvane
