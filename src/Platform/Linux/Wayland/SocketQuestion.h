#pragma once

#include "Platform/Linux/Wayland/CompositorSocket.h"

#include <QByteArray>
#include <QObject>

#include <functional>
#include <optional>

namespace morvane {

/// One question to a program that listens on a local socket, over a connection of its own.
/// Destroyed with its owner, or when it has been answered. Main thread, which doesn't wait for it.
class SocketQuestion : public QObject {
    Q_OBJECT

public:
    using Finished = std::function<void(const std::optional<QByteArray> &answer)>;

    /// The total length of an answer, read from its beginning; none while it isn't known yet, or if
    /// the other end marks the end by closing.
    using Length = std::function<std::optional<qsizetype>(const QByteArray &beginning)>;

    /// For answers that end when the other end closes.
    static std::optional<qsizetype> untilItCloses(const QByteArray &) { return std::nullopt; }

    /// Asks at once. `finished` gets the answer once, after this call has returned; none if nobody
    /// listens, or if the answer is longer than 1 MiB or hasn't come after two seconds.
    static void ask(Scheduler &scheduler, const QString &path, const QByteArray &question,
                    const Length &length, const Finished &finished, QObject *owner);

private:
    SocketQuestion(Scheduler &scheduler, Length length, Finished finished, QObject *owner);
    void add(const QByteArray &bytes);
    void end(const std::optional<QByteArray> &answer);

    const Length m_length;
    Finished m_finished; ///< empty once it has been called
    CompositorSocket m_socket;
    Task m_limit;
    QByteArray m_answer;
};

} // namespace morvane
