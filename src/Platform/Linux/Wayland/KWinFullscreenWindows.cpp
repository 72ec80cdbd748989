#include "Platform/Linux/Wayland/KWinFullscreenWindows.h"

#include "Platform/Linux/Wayland/CompositorJson.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <utility>

namespace morvane {

namespace {

/// Releases 5 and 6 name signals and properties differently, and 5 doesn't tell the stacking order:
/// the order of activation comes near enough. Windows are compared by their ids, since a window's
/// script object changes when another script sees it.
const QString watching = QStringLiteral(R"(
function isInView(w) {
    var current = workspace.currentDesktop;
    var onDesktop = w.onAllDesktops
                    || ("desktop" in w ? w.desktop === current
                                       : w.desktops.some(function(d) { return d.id === current.id; }));
    var onActivity = !w.activities || w.activities.length === 0
                     || w.activities.indexOf(workspace.currentActivity) >= 0;
    return w.normalWindow && !w.minimized && onDesktop && onActivity;
}
function meet(a, b) {
    return a.x < b.x + b.width && b.x < a.x + a.width && a.y < b.y + b.height && b.y < a.y + a.height;
}
function idOf(w) {
    return String(w.internalId);
}
var order = windows().map(idOf);
var last = "";
function look() {
    var above = [];
    var areas = [];
    var place = function(w) { return order.indexOf(idOf(w)); };
    var inView = windows().filter(isInView);
    inView.sort(function(a, b) { return place(b) - place(a); });
    inView.forEach(function(w) {
        var g = w.frameGeometry;
        if (w.fullScreen && !above.some(function(other) { return meet(other, g); })) {
            areas.push([g.x, g.y, g.width, g.height]);
        }
        above.push(g);
    });
    var text = JSON.stringify(areas);
    if (text !== last) {
        last = text;
        tell(text);
    }
}
function leave(w) {
    order = order.filter(function(id) { return id !== idOf(w); });
    look();
}
function come(w) {
    if (w) {
        order = order.filter(function(id) { return id !== idOf(w); }).concat([idOf(w)]);
    }
    look();
}
function on(object, names, act) {
    names.forEach(function(name) {
        if (object[name]) {
            object[name].connect(act);
        }
    });
}
function watch(w) {
    on(w, ["fullScreenChanged", "minimizedChanged", "desktopChanged", "desktopsChanged"], look);
    w.frameGeometryChanged.connect(function() {
        if (w.fullScreen) {
            look();
        }
    });
}
windows().forEach(watch);
on(workspace, ["windowAdded", "clientAdded"], watch);
on(workspace, ["windowAdded", "clientAdded", "windowActivated", "clientActivated"], come);
on(workspace, ["windowRemoved", "clientRemoved"], leave);
on(workspace, ["currentDesktopChanged", "currentActivityChanged"], look);
come(workspace.activeWindow || workspace.activeClient);
)");

} // namespace

void KWinFullscreenWindows::follow() {
    if (!std::exchange(m_isFollowing, true)) {
        m_scripts.follow(watching, [this](const QString &told) { take(told); });
    }
}

void KWinFullscreenWindows::take(const QString &told) {
    QList<QRect> areas;
    const QJsonArray list = QJsonDocument::fromJson(told.toUtf8()).array();
    for (const auto &area : list) {
        areas.append(CompositorJson::layoutRect(area[0].toDouble(), area[1].toDouble(),
                                                area[2].toDouble(), area[3].toDouble()));
    }
    setAreas(areas);
}

} // namespace morvane

#include "moc_KWinFullscreenWindows.cpp"
