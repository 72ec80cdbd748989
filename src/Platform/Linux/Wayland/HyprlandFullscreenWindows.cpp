#include "Platform/Linux/Wayland/HyprlandFullscreenWindows.h"

#include "Platform/Linux/Wayland/CompositorJson.h"
#include "Platform/Linux/Wayland/SocketQuestion.h"

#include <QFileInfo>
#include <QSet>

#include <algorithm>

namespace morvane {

namespace {

using Answer = std::optional<QByteArray>;

/// Leaves out the active window's events, which also come with each new title of it.
bool mayChangeFullscreen(const QByteArray &event) {
    static const QSet<QByteArray> known{
        "fullscreen",  "workspace",  "focusedmon",   "activespecial",  "openwindow",
        "closewindow", "movewindow", "monitoradded", "monitorremoved", "moveworkspace"};
    return known.contains(event.left(event.indexOf(">>")));
}

QList<QJsonObject> listOf(const Answer &answer) {
    return CompositorJson::objectsOf(answer.value_or(QByteArray()));
}

int workspaceOf(const QJsonObject &object, const char *key) {
    return object[QLatin1String(key)].toObject()[QLatin1String("id")].toInt();
}

/// False for a window that is only maximised, which leaves room for bars. Older releases tell the
/// two apart by another key.
bool isFullscreen(const QJsonObject &client) {
    constexpr int full = 2;
    const QJsonValue state = client[QLatin1String("fullscreen")];
    return state.isBool() ? state.toBool() && client[QLatin1String("fullscreenMode")].toInt() == 0
                          : (state.toInt() & full) != 0;
}

QRect rectOf(const QJsonObject &client) {
    const QJsonValue at = client[QLatin1String("at")];
    const QJsonValue size = client[QLatin1String("size")];
    return CompositorJson::layoutRect(at[0].toInt(), at[1].toInt(), size[0].toInt(),
                                      size[1].toInt());
}

QList<QRect> areasOf(const Answer &monitors, const Answer &clients) {
    QSet<int> shown;
    for (const QJsonObject &monitor : listOf(monitors)) {
        shown << workspaceOf(monitor, "activeWorkspace")
              << workspaceOf(monitor, "specialWorkspace");
    }
    QList<QRect> result;
    for (const QJsonObject &client : listOf(clients)) {
        if (isFullscreen(client) && shown.contains(workspaceOf(client, "workspace"))) {
            result.append(rectOf(client));
        }
    }
    return result;
}

} // namespace

HyprlandFullscreenWindows::HyprlandFullscreenWindows(const QString &socket, Scheduler &scheduler)
    : FollowedFullscreenWindows(QFileInfo(socket).path() + QStringLiteral("/.socket2.sock"),
                                scheduler),
      m_socket(socket), m_scheduler(scheduler) {}

void HyprlandFullscreenWindows::begin(CompositorSocket &) {
    refresh();
}

std::optional<bool> HyprlandFullscreenWindows::take(QByteArray &heard) {
    const qsizetype end = heard.lastIndexOf('\n') + 1;
    const QList<QByteArray> events = heard.left(end).split('\n');
    heard.remove(0, end);
    return std::ranges::any_of(events, &mayChangeFullscreen);
}

void HyprlandFullscreenWindows::ask(const Told &told) {
    SocketQuestion::ask(
        m_scheduler, m_socket, "j/monitors", &SocketQuestion::untilItCloses,
        [this, told](const Answer &monitors) {
            SocketQuestion::ask(
                m_scheduler, m_socket, "j/clients", &SocketQuestion::untilItCloses,
                [told, monitors](const Answer &clients) { told(areasOf(monitors, clients)); },
                this);
        },
        this);
}

} // namespace morvane

#include "moc_HyprlandFullscreenWindows.cpp"
