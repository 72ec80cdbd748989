#pragma once

#include "Platform/Linux/Desktop/WindowSystem.h"

#include <QDBusConnection>
#include <QHash>
#include <QObject>
#include <QString>

#include <functional>
#include <memory>

class QTemporaryFile;

namespace morvane {

/// The windows of KWin on Wayland, which tells and moves them for a script that it is given over
/// the message bus. Works with the scripts of its releases 5 and 6.
class KWinWindowSystem : public QObject, public WindowSystem {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "io.morvane.Windows")

public:
    explicit KWinWindowSystem(const QDBusConnection &bus);

    void list(Listed listed) override;
    void activate(const QString &id) override;

public slots:
    /// What a script of ours says at its end, by its name, over the bus.
    void told(const QString &script, const QString &answer);

private:
    using Finished = std::function<void(const QString &answer)>;
    struct Script {
        std::shared_ptr<QTemporaryFile> file;
        Finished finished;
    };

    void run(const QString &body, Finished finished);
    void end(const QString &script, const QString &answer);
    void call(const QString &method, const QVariantList &arguments,
              const std::function<void(bool isDone)> &finished);

    QDBusConnection m_bus;
    QHash<QString, Script> m_scripts; ///< that run, by their names
};

} // namespace morvane
