#include "Platform/Linux/Desktop/KnownApplications.h"

#include <algorithm>
#include <array>

namespace morvane::KnownApplications {

namespace {

struct Application {
    const char *bundleID;
    std::array<const char *, 3> desktopEntryIDs;
    std::array<const char *, 2> windowClasses;
};

constexpr std::array applications{
    Application{"com.mitchellh.ghostty",
                {"com.mitchellh.ghostty", "ghostty"},
                {"com.mitchellh.ghostty", "ghostty"}},
    Application{"net.kovidgoyal.kitty", {"kitty"}, {"kitty"}},
    Application{"dev.warp.Warp-Stable", {"dev.warp.Warp"}, {"dev.warp.Warp"}},
    Application{
        "io.alacritty", {"Alacritty", "org.alacritty.Alacritty", "alacritty"}, {"Alacritty"}},
    Application{"com.github.wez.wezterm",
                {"org.wezfurlong.wezterm"},
                {"org.wezfurlong.wezterm", "wezterm"}},
    Application{"com.stablyai.orca", {"orca"}, {"Orca"}},
    Application{"com.microsoft.VSCode", {"code", "code_code", "com.visualstudio.code"}, {"Code"}},
    Application{"com.todesktop.230313mzl4w4u92", {"cursor"}, {"Cursor"}},
    Application{"com.jetbrains.WebStorm", {"jetbrains-webstorm"}, {"jetbrains-webstorm"}},
    Application{"com.jetbrains.PhpStorm", {"jetbrains-phpstorm"}, {"jetbrains-phpstorm"}},
    Application{"com.jetbrains.intellij",
                {"jetbrains-idea", "jetbrains-idea-ce"},
                {"jetbrains-idea", "jetbrains-idea-ce"}},
    Application{"com.jetbrains.pycharm",
                {"jetbrains-pycharm", "jetbrains-pycharm-ce"},
                {"jetbrains-pycharm", "jetbrains-pycharm-ce"}},
    Application{
        "org.gnome.Terminal", {"org.gnome.Terminal"}, {"Gnome-terminal", "gnome-terminal-server"}},
    Application{"org.kde.konsole", {"org.kde.konsole"}, {"konsole"}},
    Application{"XTerm", {"debian-xterm", "xterm"}, {"XTerm", "UXTerm"}},
};

/// A terminal whose desktop entry has the same name and the category TerminalEmulator needn't be
/// listed.
constexpr std::array terminals{"org.gnome.Terminal",
                               "org.kde.konsole",
                               "XTerm",
                               "UXTerm",
                               "URxvt",
                               "Rxvt",
                               "st",
                               "st-256color",
                               "Eterm",
                               "mlterm",
                               "kgx",
                               "org.gnome.Console",
                               "org.gnome.Ptyxis",
                               "Xfce4-terminal",
                               "Mate-terminal",
                               "Lxterminal",
                               "qterminal",
                               "deepin-terminal",
                               "io.elementary.terminal",
                               "terminology",
                               "yakuake",
                               "Guake",
                               "Tilda",
                               "Tilix",
                               "Terminator",
                               "Sakura",
                               "Roxterm",
                               "cool-retro-term",
                               "foot",
                               "footclient",
                               "contour",
                               "rio",
                               "Hyper",
                               "tabby"};

bool isNamed(const QString &name, const char *known) {
    return name.compare(QLatin1String(known), Qt::CaseInsensitive) == 0;
}

const Application *find(const QString &bundleID) {
    const auto *const found = std::ranges::find_if(applications, [&](const Application &known) {
        return bundleID == QLatin1String(known.bundleID);
    });
    return found == applications.end() ? nullptr : found;
}

template <std::size_t size>
QStringList textsOf(const std::array<const char *, size> &texts) {
    QStringList result;
    for (const char *text : texts) {
        if (text) {
            result.append(QString::fromLatin1(text));
        }
    }
    return result;
}

} // namespace

QStringList desktopEntryIDs(const QString &bundleID) {
    const Application *application = find(bundleID);
    return application ? textsOf(application->desktopEntryIDs) : QStringList{bundleID};
}

QStringList windowClasses(const QString &bundleID) {
    const Application *application = find(bundleID);
    return application ? textsOf(application->windowClasses) : QStringList();
}

QString bundleID(const QString &windowClass) {
    for (const Application &application : applications) {
        for (const char *name : application.windowClasses) {
            if (name && isNamed(windowClass, name)) {
                return QString::fromLatin1(application.bundleID);
            }
        }
    }
    return windowClass;
}

bool isTerminal(const QString &bundleID) {
    return std::ranges::any_of(terminals,
                               [&](const char *known) { return isNamed(bundleID, known); });
}

} // namespace morvane::KnownApplications
