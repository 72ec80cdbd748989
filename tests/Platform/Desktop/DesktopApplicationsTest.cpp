#include "Platform/Linux/Desktop/DesktopApplications.h"

#include "Forwarder/TerminalNames.h"
#include "Platform/Linux/Desktop/KnownApplications.h"
#include "Support/TemporaryHome.h"

#include <gtest/gtest.h>

namespace morvane {
namespace {

TEST(KnownApplications, AreStartedByTheEntriesThatTellOfThem) {
    const auto text = [](std::string_view name) { return QString::fromUtf8(QByteArrayView(name)); };
    for (const auto &[entry, host] : hostsOfEntries) {
        EXPECT_TRUE(KnownApplications::desktopEntryIDs(text(host)).contains(text(entry))) << entry;
    }
}

TEST(DesktopApplications, NameWhatIsInstalledHere) {
    TemporaryHome home;
    home.set("XDG_DATA_HOME", home.path("data"));
    home.write("data/applications/code.desktop",
               "[Desktop Action new]\nName=New window\n[Desktop Entry]\nName[de]=Der Editor\n"
               "Name=Visual Editor\nName=Second\nStartupWMClass=code\n");
    home.write("data/applications/org.example.Nameless.desktop", "[Desktop Entry]\nExec=x\n");
    home.write("data/applications/codium.desktop",
               "[Desktop Entry]\nName=VSCodium\nStartupWMClass=VSCodium\n"
               "Categories=Development;IDE;\n");
    home.write("data/applications/org.example.Prompt.desktop",
               "[Desktop Entry]\nCategories=System;TerminalEmulator;\n");
    home.write("outside.desktop", "[Desktop Entry]\nName=Outside\nCategories=TerminalEmulator\n");

    const DesktopApplications applications;
    EXPECT_EQ(applications.displayName("com.microsoft.VSCode"), "Visual Editor");
    EXPECT_EQ(applications.displayName("code"), "Visual Editor");
    for (const char *unknown :
         {"org.example.Nameless", "org.example.Absent", "", "../../outside"}) {
        EXPECT_EQ(applications.displayName(QString::fromLatin1(unknown)), std::nullopt) << unknown;
    }
    for (const char *terminal : {"XTerm", "org.example.Prompt", "org.gnome.Terminal"}) {
        EXPECT_TRUE(applications.isTerminal(QString::fromLatin1(terminal))) << terminal;
    }
    for (const char *other : {"VSCodium", "codium", "", "../../outside"}) {
        EXPECT_FALSE(applications.isTerminal(QString::fromLatin1(other))) << other;
    }
    EXPECT_TRUE(applications.isCalled("codium", "VSCodium"));
    EXPECT_TRUE(applications.isCalled("code", "com.microsoft.VSCode"));
    EXPECT_TRUE(applications.isCalled("xfce4-terminal", "Xfce4-terminal"));
    EXPECT_FALSE(applications.isCalled("codium", "Emacs"));
    EXPECT_FALSE(applications.isCalled("../../outside", "Emacs"));
}

} // namespace
} // namespace morvane
