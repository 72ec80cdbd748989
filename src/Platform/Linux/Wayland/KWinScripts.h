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

/// Scripts that KWin is given over the message bus, for what it tells in no other way. In each
/// `windows()` lists the windows, from the back to the front where the release tells, and
/// `tell(text)` sends a text here. Works with the scripts of its releases 5 and 6. Main thread.
class KWinScripts : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "io.morvane.Windows")

public:
    using Heard = std::function<void(const QString &text)>;

    /// No other object of this connection may have the path.
    KWinScripts(const QDBusConnection &bus, const QString &path, Scheduler &scheduler);
    ~KWinScripts() override;

    /// Runs a script that tells once. `heard` is called with that, or an empty text where nothing
    /// comes within two seconds.
    void ask(const QString &body, const Heard &heard);

    /// Runs a script that may tell again and again, for as long as this object lives.
    void follow(const QString &body, const Heard &heard);

public slots:
    /// What a script of ours says, by its name, over the bus.
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
    std::map<QString, Script> m_scripts; ///< that run, by their names
};

} // namespace morvane
