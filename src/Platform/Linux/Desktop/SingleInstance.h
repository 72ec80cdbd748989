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
/// that it was started, and gives way; a first without a screen gives way to a second with one.
/// Where a home is shared, each machine has a first of its own.
/// Owned by `launch`; main thread.
class SingleInstance : public QObject {
    Q_OBJECT

public:
    enum class Screen { none, reached };
    enum class Start { byPerson, atLogin };

    /// Two processes with the same configuration folder are the same program to a person.
    SingleInstance(const QString &configFolder, Screen screen, Start start = Start::byPerson);
    ~SingleInstance() override;

    enum class Outcome {
        isFirst,
        toldTheFirst,
        isOnAnotherDisplay, ///< there is a first, which this one's person doesn't see
        firstIsSilent,      ///< there is a first, which has not answered
    };

    /// To be called once. A first is waited for as long as told; it answers in its event loop.
    Outcome claim(Seconds patience);

    /// The X display of a first that has answered; empty where it has none, or doesn't tell.
    QString displayOfFirst() const { return QString::fromUtf8(m_displayOfFirst); }

    /// Its end is to take the lock's file away, and the folder where nothing else lies in it.
    void leaveNothing() { m_leavesNothing = true; }

signals:
    /// A person has started the program again.
    void reopened();

    /// It was started where there is a screen, and waits for this one, which has none, to end.
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
    const QString m_name; ///< of the files, without their ending
    const QStringList m_runtimeFolders;
    KernelLock m_lock;
    QByteArray m_displayOfFirst;
    QString m_socketPath; ///< where it listens
    std::optional<Descriptor> m_socket;
    std::optional<QSocketNotifier> m_knocks; ///< at the socket
    bool m_leavesNothing = false;
};

} // namespace morvane
