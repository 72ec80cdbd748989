#include "Platform/Linux/Desktop/TerminalTabs.h"

#include "Platform/Linux/Desktop/BusQuestion.h"
#include "Platform/Linux/TerminalProcesses.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QXmlStreamReader>

#include <utility>

namespace morvane {

namespace {

constexpr int questionLimit = 1000; // milliseconds
constexpr int shownTitle = 1; ///< Konsole's number for the title with its placeholders filled in

const QString konsoleWindow = QStringLiteral("org.kde.konsole.Window");

/// The names of a bus object's direct children.
QStringList childrenIn(const QString &introspection) {
    QStringList result;
    QXmlStreamReader reader(introspection);
    while (!reader.atEnd()) {
        if (reader.readNext() == QXmlStreamReader::StartElement &&
            reader.name() == QLatin1String("node") &&
            reader.attributes().hasAttribute(QLatin1String("name"))) {
            result.append(reader.attributes().value(QLatin1String("name")).toString());
        }
    }
    return result;
}

} // namespace

/// The Konsole tab to select, and who waits for it.
struct TerminalTabs::KonsoleTab {
    Place session;
    Place window;
    QString id;   ///< the session's id
    Outcome told; ///< what the shell was told of its window
    Selected selected;
};

/// The shell may have inherited its variables from an outer terminal, in which this one was
/// started, so each answer is checked against the processes.
void TerminalTabs::select(const TerminalProcesses &processes, const Selected &selected) {
    if (processes.ancestors.isEmpty()) {
        selected({});
    } else if (!processes.variable("KONSOLE_DBUS_SERVICE").isEmpty()) {
        selectInKonsole(processes, selected);
    } else if (processes.ancestors.value(1).name == "gnome-terminal-") {
        selectInGnomeTerminal(processes, selected);
    } else {
        selected({processes.variable("WINDOWID"), {}, false});
    }
}

void TerminalTabs::selectInKonsole(const TerminalProcesses &processes, const Selected &selected) {
    const QString service = processes.variable("KONSOLE_DBUS_SERVICE");
    const QString path = processes.variable("KONSOLE_DBUS_SESSION");
    const KonsoleTab tab{{service, path, QStringLiteral("org.kde.konsole.Session")},
                         {service, processes.variable("KONSOLE_DBUS_WINDOW"), konsoleWindow},
                         path.mid(path.lastIndexOf(QLatin1Char('/')) + 1),
                         {processes.variable("WINDOWID"), {}, false},
                         selected};
    const qint64 shell = processes.ancestors.first().id;
    ask(tab.session, "processId", {}, [=, this](const QVariantList &answer) {
        if (answer.value(0).toLongLong() == shell) {
            lookIntoItsWindow(tab);
        } else {
            tab.selected(tab.told);
        }
    });
}

/// The shell's variables name the window in which it was started.
void TerminalTabs::lookIntoItsWindow(const KonsoleTab &tab) {
    ask(tab.window, "sessionList", {}, [=, this](const QVariantList &answer) {
        if (answer.value(0).toStringList().contains(tab.id)) {
            ask(tab.window, "setCurrentSession", {tab.id.toInt()},
                [=](const auto &) { tab.selected(tab.told); });
        } else {
            lookIntoAllWindows(tab);
        }
    });
}

/// Called when the tab has been dragged into another window since.
void TerminalTabs::lookIntoAllWindows(const KonsoleTab &tab) {
    const Place windows{tab.window.service, QStringLiteral("/Windows"),
                        QStringLiteral("org.freedesktop.DBus.Introspectable")};
    ask(windows, "Introspect", {}, [=, this](const QVariantList &answer) {
        for (const QString &name : childrenIn(answer.value(0).toString())) {
            // A window without the tab ignores the call.
            ask({windows.service, windows.path + u'/' + name, konsoleWindow}, "setCurrentSession",
                {tab.id.toInt()}, [](const auto &) {});
        }
        tellTitle(tab);
    });
}

/// Only the title tells which window the tab is in now.
void TerminalTabs::tellTitle(const KonsoleTab &tab) {
    ask(tab.session, "title", {shownTitle}, [=](const QVariantList &answer) {
        tab.selected({{}, answer.value(0).toString(), false});
    });
}

/// Uses GNOME Shell's search provider for open terminals, which is the only way to reach a tab.
void TerminalTabs::selectInGnomeTerminal(const TerminalProcesses &processes,
                                         const Selected &selected) {
    const QString screen = processes.variable("GNOME_TERMINAL_SCREEN");
    const QString id =
        screen.mid(screen.lastIndexOf(QLatin1Char('/')) + 1).replace(QLatin1Char('_'), u'-');
    const Place search{processes.variable("GNOME_TERMINAL_SERVICE"),
                       QStringLiteral("/org/gnome/Terminal/SearchProvider"),
                       QStringLiteral("org.gnome.Shell.SearchProvider2")};
    ask(search, "GetResultMetas", {QStringList{id}}, [=, this](const QVariantList &answer) {
        const auto found = qdbus_cast<QList<QVariantMap>>(answer.value(0));
        if (found.isEmpty()) {
            selected({});
            return;
        }
        const QString title = found.first().value(QStringLiteral("name")).toString();
        ask(search, "ActivateResult", {id, QStringList(), 0U}, [=](const QVariantList &) {
            selected({{}, title, true});
        });
    });
}

void TerminalTabs::ask(const Place &place, const char *method, const QVariantList &arguments,
                       Answered answered) {
    QDBusMessage question = QDBusMessage::createMethodCall(place.service, place.path,
                                                           place.interface, QLatin1String(method));
    question.setArguments(arguments);
    question.setAutoStartService(false);
    BusQuestion::ask(
        m_bus, question, &m_context,
        [answered = std::move(answered)](const QDBusMessage &reply) {
            answered(reply.type() == QDBusMessage::ReplyMessage ? reply.arguments()
                                                                : QVariantList());
        },
        questionLimit);
}

} // namespace morvane
