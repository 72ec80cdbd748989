#include "Platform/Linux/Wayland/SwayMessage.h"

#include "Platform/Linux/Wayland/CompositorJson.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <cstring>

namespace morvane::SwayMessage {

namespace {

const QByteArray magic("i3-ipc");
constexpr qsizetype numberSize = sizeof(std::uint32_t);

/// Both ends are on one machine, so numbers are in its byte order.
QByteArray bytesOf(std::uint32_t number) {
    return {reinterpret_cast<const char *>(&number), numberSize};
}

qsizetype headSize() {
    return magic.size() + 2 * numberSize;
}

QList<QJsonObject> childrenOf(const QJsonObject &node) {
    QList<QJsonObject> result;
    for (const char *list : {"nodes", "floating_nodes"}) {
        const QJsonArray children = node[QLatin1String(list)].toArray();
        for (const auto &child : children) {
            result.append(child.toObject());
        }
    }
    const QJsonArray focus = node[QLatin1String("focus")].toArray();
    const auto place = [&](const QJsonObject &child) {
        return std::find(focus.begin(), focus.end(), child[QLatin1String("id")]) - focus.begin();
    };
    std::ranges::stable_sort(result, {}, place);
    return result;
}

QJsonObject contentOf(const QByteArray &message) {
    return QJsonDocument::fromJson(message.mid(headSize())).object();
}

/// Only windows have a pid; XWayland's have a class instead of an app_id.
void collect(const QJsonObject &node, QList<WindowSystem::Window> &result) {
    const qint64 process = node[QLatin1String("pid")].toInteger();
    if (process > 0) {
        const QJsonObject x11 = node[QLatin1String("window_properties")].toObject();
        WindowSystem::Window window;
        window.id = QString::number(node[QLatin1String("id")].toInteger());
        window.title = node[QLatin1String("name")].toString().left(WindowSystem::longestTitle);
        window.names = {node[QLatin1String("app_id")].toString(),
                        x11[QLatin1String("class")].toString(),
                        x11[QLatin1String("instance")].toString()};
        window.names.removeAll(QString());
        window.process = process;
        result.append(window);
    }
    for (const QJsonObject &child : childrenOf(node)) {
        collect(child, result);
    }
}

QRect rectOf(const QJsonObject &node) {
    const QJsonObject rect = node[QLatin1String("rect")].toObject();
    const auto number = [&rect](const char *key) { return rect[QLatin1String(key)].toInt(); };
    return CompositorJson::layoutRect(number("x"), number("y"), number("width"), number("height"));
}

/// Workspaces also report themselves as full-screen, so they are left out.
void collectFullscreen(const QJsonObject &node, bool isInView, QList<QRect> &result) {
    constexpr int ofDisplay = 1;
    constexpr int ofAllDisplays = 2;
    const QLatin1String workspace("workspace");
    const QLatin1String type("type");
    const int mode = node[QLatin1String("fullscreen_mode")].toInt();
    if (node[type] != workspace && (mode == ofAllDisplays || (mode == ofDisplay && isInView))) {
        result.append(rectOf(node));
    }
    for (const QJsonObject &child : childrenOf(node)) {
        const bool isHidden =
            child[type] == workspace &&
            child[QLatin1String("name")] != node[QLatin1String("current_workspace")];
        collectFullscreen(child, isInView && !isHidden, result);
    }
}

} // namespace

QByteArray encode(Type type, const QByteArray &payload) {
    return magic + bytesOf(static_cast<std::uint32_t>(payload.size())) +
           bytesOf(static_cast<std::uint32_t>(type)) + payload;
}

std::optional<qsizetype> length(const QByteArray &beginning) {
    if (beginning.size() < headSize()) {
        return std::nullopt;
    }
    std::uint32_t size = 0;
    std::memcpy(&size, beginning.constData() + magic.size(), numberSize);
    return beginning.startsWith(magic) ? headSize() + static_cast<qsizetype>(size) : 0;
}

QList<WindowSystem::Window> windows(const QByteArray &answer) {
    QList<WindowSystem::Window> result;
    collect(contentOf(answer), result);
    return result;
}

QList<QRect> fullscreenAreas(const QByteArray &answer) {
    QList<QRect> result;
    collectFullscreen(contentOf(answer), true, result);
    return result;
}

News newsOf(const QByteArray &message) {
    const QJsonObject content = contentOf(message);
    if (content[QLatin1String("success")] == false) {
        return News::refusal;
    }
    return content[QLatin1String("change")] == QLatin1String("title") ? News::title : News::other;
}

} // namespace morvane::SwayMessage
