#include "Platform/Linux/Wayland/KWinWindowSystem.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QTemporaryFile>
#include <QTimer>
#include <QUuid>

#include <chrono>
#include <utility>

namespace morvane {

namespace {

constexpr std::chrono::seconds scriptLimit(2);
const QString receiverPath = QStringLiteral("/Windows");

/// From the front to the back where the release tells. What lies around every script: "windows"
/// before, and the answer after it.
const QString frame = QStringLiteral(R"(
var windows = workspace.stackingOrder ? Array.prototype.slice.call(workspace.stackingOrder)
            : workspace.windowList ? workspace.windowList() : workspace.clientList();
var answer = "";
%1
callDBus("%2", "%3", "io.morvane.Windows", "told", "%4", answer);
)");

const QString listing = QStringLiteral(R"(
var told = [];
for (var i = windows.length - 1; i >= 0; --i) {
    var w = windows[i];
    if (w.normalWindow) {
        told.push({ id: String(w.internalId), title: String(w.caption), process: w.pid,
                    isActive: w.active, names: [String(w.resourceClass), String(w.resourceName),
                                                String(w.desktopFileName)] });
    }
}
told.sort(function(a, b) { return b.isActive - a.isActive; });
answer = JSON.stringify(told);
)");

const QString activation = QStringLiteral(R"(
for (var i = 0; i < windows.length; ++i) {
    if (String(windows[i].internalId) === "%1") {
        windows[i].minimized = false;
        if ("activeWindow" in workspace) {
            workspace.activeWindow = windows[i];
        } else {
            workspace.activeClient = windows[i];
        }
    }
}
)");

/// KWin numbers the titles of windows that have the same, behind them.
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

KWinWindowSystem::KWinWindowSystem(const QDBusConnection &bus) : m_bus(bus) {
    m_bus.registerObject(receiverPath, this, QDBusConnection::ExportAllSlots);
}

void KWinWindowSystem::list(Listed listed) {
    run(listing, [listed = std::move(listed)](const QString &answer) {
        QList<Window> result;
        const QJsonArray told = QJsonDocument::fromJson(answer.toUtf8()).array();
        for (const auto &window : told) {
            result.append(windowOf(window.toObject()));
        }
        listed(result);
    });
}

/// Nothing but an identifier of this form goes into the script.
void KWinWindowSystem::activate(const QString &id) {
    if (const QUuid window(id); !window.isNull()) {
        run(activation.arg(window.toString()), [](const auto &) {});
    }
}

/// The name is one that nobody can guess, since anybody on the bus may answer.
void KWinWindowSystem::run(const QString &body, Finished finished) {
    const QString name =
        QStringLiteral("morvane-") + QUuid::createUuid().toString(QUuid::WithoutBraces);
    auto file = std::make_shared<QTemporaryFile>();
    const QString script = QString(frame)
                               .replace(QLatin1String("%2"), m_bus.baseService())
                               .replace(QLatin1String("%3"), receiverPath)
                               .replace(QLatin1String("%4"), name)
                               .replace(QLatin1String("%1"), body);
    if (file->open()) {
        file->write(script.toUtf8());
        file->close();
    }
    m_scripts.insert(name, {file, std::move(finished)});
    QTimer::singleShot(scriptLimit, this, [this, name] { end(name, {}); });
    call(QStringLiteral("loadScript"), {file->fileName(), name}, [this, name](bool isDone) {
        if (isDone) {
            call(QStringLiteral("start"), {}, [](bool) {});
        } else {
            end(name, {});
        }
    });
}

void KWinWindowSystem::told(const QString &script, const QString &answer) {
    end(script, answer);
}

void KWinWindowSystem::end(const QString &script, const QString &answer) {
    if (const auto finished = m_scripts.take(script).finished) {
        call(QStringLiteral("unloadScript"), {script}, [](bool) {});
        finished(answer);
    }
}

void KWinWindowSystem::call(const QString &method, const QVariantList &arguments,
                            const std::function<void(bool isDone)> &finished) {
    QDBusMessage question =
        QDBusMessage::createMethodCall(QStringLiteral("org.kde.KWin"), QStringLiteral("/Scripting"),
                                       QStringLiteral("org.kde.kwin.Scripting"), method);
    question.setArguments(arguments);
    question.setAutoStartService(false);
    auto *watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(question), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [watcher, finished] {
        watcher->deleteLater();
        finished(!watcher->isError());
    });
}

} // namespace morvane

#include "moc_KWinWindowSystem.cpp"
