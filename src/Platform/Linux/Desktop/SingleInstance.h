#pragma once

#include "Platform/Descriptor.h"
#include "Platform/Linux/KernelLock.h"
#include "Platform/Time.h"

#include <QObject>
#include <QSocketNotifier>
#include <QStringList>

#include <optional>

class QDeadlineTimer;

namespace morvane {

/// Lets one process run for each configuration folder on this machine: a second one tells the first
/// that it was started, and exits; a first without a screen gives way to a second with one. If a
/// home is shared, each machine has its own first. Owned by `launch`; main thread.
class SingleInstance : public QObject {
    Q_OBJECT

public:
    enum class Screen { none, reached };
    enum class Start { byPerson, atLogin };

    /// To a person, processes with the same configuration folder are the same program.
    SingleInstance(const QString &configFolder, Screen screen, Start start = Start::byPerson);
    ~SingleInstance() override;

    enum class Outcome {
        isFirst,
        toldTheFirst,
        isOnAnotherDisplay, ///< there is a first, but not where this one's person sees it
        firstIsSilent,      ///< there is a first, but it has not answered
    };

    /// Call once. Waits up to `patience` for a first, which answers from its event loop.
    Outcome claim(Seconds patience);

    /// The X display of a first that has answered; empty if it has none or doesn't tell.
    QString displayOfFirst() const { return QString::fromUtf8(m_displayOfFirst); }

    /// Makes the destructor remove the lock's file, and the configuration folder if nothing else is
    /// in it.
    void leaveNothing() { m_leavesNothing = true; }

signals:
    /// A person has started the program again.
    void reopened();

    /// A second process with a screen waits for this one, which has none, to end.
    void placeWanted();

private:
    enum class Answer { nobody, silence, heard, heardElsewhere };

    KernelLock::Outcome takeLock();
    Answer tellTheFirst(const QDeadlineTimer &deadline);
    Answer hearTheFirst(int socket, const QDeadlineTimer &deadline);
    void listen();
    void answer();
    void hear(int second);

    const QString m_configFolder;
    const Screen m_screen;
    const Start m_start;
    const QByteArray m_display;
    const QString m_name; ///< of the lock and the socket, without ending
    const QStringList m_runtimeFolders;
    KernelLock m_lock;
    QByteArray m_displayOfFirst;
    QString m_socketPath; ///< where this process listens
    std::optional<Descriptor> m_socket;
    std::optional<QSocketNotifier> m_listenNotifier; ///< of connections to the socket
    bool m_leavesNothing = false;
};

} // namespace morvane
