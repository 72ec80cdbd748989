#include "Platform/Linux/Wayland/KWinWindowSystem.h"

#include "Platform/Linux/Wayland/CompositorJson.h"

#include <QJsonArray>
#include <QRegularExpression>
#include <QUuid>

#include <utility>

namespace morvane {

namespace {

const QString listing = QStringLiteral(R"(
var told = [];
var all = windows();
for (var i = all.length - 1; i >= 0; --i) {
    var w = all[i];
    if (w.normalWindow) {
        told.push({ id: String(w.internalId), title: String(w.caption), process: w.pid,
                    isActive: w.active, names: [String(w.resourceClass), String(w.resourceName),
                                                String(w.desktopFileName)] });
    }
}
told.sort(function(a, b) { return b.isActive - a.isActive; });
tell(JSON.stringify(told));
)");

const QString activation = QStringLiteral(R"(
windows().forEach(function(w) {
    if (String(w.internalId) === "%1") {
        w.minimized = false;
        if ("activeWindow" in workspace) {
            workspace.activeWindow = w;
        } else {
            workspace.activeClient = w;
        }
    }
});
tell("");
)");

/// KWin appends a number to the titles of windows that have the same one.
QString withoutNumber(const QString &title) {
    static const QRegularExpression number(QStringLiteral(" <[0-9]+>\\x{200E}?$"));
    return QString(title).remove(number);
}

WindowSystem::Window windowOf(const QJsonObject &told) {
    WindowSystem::Window result;
    result.id = told[QLatin1String("id")].toString();
    result.title =
        withoutNumber(told[QLatin1String("title")].toString().left(WindowSystem::longestTitle));
    const QJsonArray names = told[QLatin1String("names")].toArray();
    for (const auto &name : names) {
        result.names.append(name.toString());
    }
    result.names.removeAll(QString());
    result.process = told[QLatin1String("process")].toInteger();
    return result;
}

} // namespace

void KWinWindowSystem::list(Listed listed) {
    m_scripts.ask(listing, [listed = std::move(listed)](const QString &answer) {
        Listing result;
        result.isWhole = !answer.isEmpty();
        for (const QJsonObject &window : CompositorJson::objectsOf(answer.toUtf8())) {
            result.windows.append(windowOf(window));
        }
        listed(result);
    });
}

/// Nothing but an identifier of this form goes into the script.
void KWinWindowSystem::activate(const QString &id) {
    if (const QUuid window(id); !window.isNull()) {
        m_scripts.ask(activation.arg(window.toString()), [](const auto &) {});
    }
}

} // namespace morvane

#include "moc_KWinWindowSystem.cpp"
