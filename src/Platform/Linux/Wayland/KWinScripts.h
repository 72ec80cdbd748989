#pragma once

#include "Platform/Task.h"

#include <QDBusConnection>
#include <QObject>
#include <QString>

#include <functional>
#include <map>
#include <memory>

class QTemporaryFile;

namespace morvane {

class Scheduler;

/// Runs scripts in KWin, loaded over the message bus, for what KWin offers in no other way. In each
/// script `windows()` lists the windows, from the back to the front if the release tells, and
/// `tell(text)` sends a text here. Works with KWin 5 and 6. Main thread.
class KWinScripts : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "io.morvane.Windows")

public:
    using Heard = std::function<void(const QString &text)>;

    /// `path` must be unique among the objects of this connection.
    KWinScripts(const QDBusConnection &bus, const QString &path, Scheduler &scheduler);
    ~KWinScripts() override;

    /// Runs a script that calls `tell` once. `heard` gets that text, or an empty one if none comes
    /// within two seconds.
    void ask(const QString &body, const Heard &heard);

    /// Runs a script that may call `tell` again and again, for as long as this object lives.
    void follow(const QString &body, const Heard &heard);

public slots:
    /// Called over the bus by the script of this name.
    void told(const QString &script, const QString &text);

private:
    enum class Tells { once, againAndAgain };

    struct Script {
        std::shared_ptr<QTemporaryFile> file;
        Heard heard;
        Tells tells = Tells::once;
        Task limit = {}; ///< for its answer
    };

    QString run(const QString &body, const Heard &heard, Tells tells);
    void unload(const QString &script);
    QDBusMessage call(const QString &method, const QVariantList &arguments) const;

    QDBusConnection m_bus;
    const QString m_path;
    Scheduler &m_scheduler;
    std::map<QString, Script> m_scripts; ///< the running ones, by name
};

} // namespace morvane
