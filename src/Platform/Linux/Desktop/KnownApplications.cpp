#include "Platform/Linux/Desktop/KnownApplications.h"

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
    Application{"io.alacritty", {"Alacritty", "org.alacritty.Alacritty"}, {"Alacritty"}},
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
    Application{"org.gnome.Terminal", {"org.gnome.Terminal"}, {"Gnome-terminal"}},
    Application{"org.kde.konsole", {"org.kde.konsole"}, {"konsole"}},
};

} // namespace

QStringList desktopEntryIDs(const QString &bundleID) {
    for (const Application &application : applications) {
        if (bundleID == QLatin1String(application.bundleID)) {
            QStringList result;
            for (const char *id : application.desktopEntryIDs) {
                if (id) {
                    result.append(QString::fromLatin1(id));
                }
            }
            return result;
        }
    }
    return {bundleID};
}

QString bundleID(const QString &windowClass) {
    for (const Application &application : applications) {
        for (const char *name : application.windowClasses) {
            if (name && windowClass.compare(QLatin1String(name), Qt::CaseInsensitive) == 0) {
                return QString::fromLatin1(application.bundleID);
            }
        }
    }
    return windowClass;
}

} // namespace morvane::KnownApplications
