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
constexpr int shownTitle = 1; ///< of the titles that Konsole has, the one with its parts filled in

/// The objects just below one of the bus.
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

/// What the shell was told it may have inherited from a terminal further out, in which another was
/// started: so each answer is held against the processes.
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

/// The window that the shell was told of is the one that it was started in. The tab may have been
/// dragged into another since then, which only the title can tell.
void TerminalTabs::selectInKonsole(const TerminalProcesses &processes, const Selected &selected) {
    const QString service = processes.variable("KONSOLE_DBUS_SERVICE");
    const QString path = processes.variable("KONSOLE_DBUS_SESSION");
    const QString id = path.mid(path.lastIndexOf(QLatin1Char('/')) + 1);
    const Place session{service, path, QStringLiteral("org.kde.konsole.Session")};
    const Place window{service, processes.variable("KONSOLE_DBUS_WINDOW"),
                       QStringLiteral("org.kde.konsole.Window")};
    const QVariantList select{id.toInt()};
    const Outcome told{processes.variable("WINDOWID"), {}, false};

    const auto lookElsewhere = [=, this](const QString &title) {
        const Place windows{service, QStringLiteral("/Windows"),
                            QStringLiteral("org.freedesktop.DBus.Introspectable")};
        ask(windows, "Introspect", {}, [=, this](const QVariantList &answer) {
            for (const QString &name : childrenIn(answer.value(0).toString())) {
                // One that hasn't got the tab does nothing.
                ask({service, QStringLiteral("/Windows/") + name, window.interface},
                    "setCurrentSession", select, [](const auto &) {});
            }
            ask(session, "title", {shownTitle}, [=](const QVariantList &) {
                selected({{}, title, false});
            });
        });
    };
    const auto find = [=, this](const QVariantList &title) {
        ask(window, "sessionList", {}, [=, this](const QVariantList &answer) {
            if (answer.value(0).toStringList().contains(id)) {
                ask(window, "setCurrentSession", select, [=](const auto &) { selected(told); });
            } else {
                lookElsewhere(title.value(0).toString());
            }
        });
    };
    const qint64 shell = processes.ancestors.first().id;
    ask(session, "processId", {}, [=, this](const QVariantList &answer) {
        if (answer.value(0).toLongLong() == shell) {
            ask(session, "title", {shownTitle}, find);
        } else {
            selected(told);
        }
    });
}

/// What GNOME's search in open terminals uses, and the only road to a tab.
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
