#include "Platform/Linux/Wayland/SocketQuestion.h"

#include "Platform/Scheduler.h"

#include <utility>

namespace morvane {

namespace {

constexpr Seconds answerLimit(2);
constexpr qsizetype maxAnswerSize = 1048576;

} // namespace

void SocketQuestion::ask(Scheduler &scheduler, const QString &path, const QByteArray &question,
                         const Length &length, const Finished &finished, QObject *owner) {
    auto *self = new SocketQuestion(scheduler, length, finished, owner);
    // Opens later, since a missing socket is reported before `open` returns.
    QMetaObject::invokeMethod(
        self,
        [self, path, question] {
            connect(&self->m_socket, &CompositorSocket::opened, self, [self, question] {
                if (!self->m_socket.send(question)) {
                    self->end(std::nullopt);
                }
            });
            self->m_socket.open(path);
        },
        Qt::QueuedConnection);
}

SocketQuestion::SocketQuestion(Scheduler &scheduler, Length length, Finished finished,
                               QObject *owner)
    : QObject(owner), m_length(std::move(length)), m_finished(std::move(finished)),
      m_socket(scheduler), m_limit(scheduler.after(answerLimit, [this] { end(std::nullopt); })) {
    connect(&m_socket, &CompositorSocket::received, this, &SocketQuestion::add);
    connect(&m_socket, &CompositorSocket::refused, this, [this] { end(std::nullopt); });
    connect(&m_socket, &CompositorSocket::closed, this,
            [this] { end(m_length(m_answer) ? std::nullopt : std::optional(m_answer)); });
}

void SocketQuestion::add(const QByteArray &bytes) {
    m_answer += bytes;
    const auto length = m_length(m_answer);
    if (m_answer.size() > maxAnswerSize || length.value_or(0) > maxAnswerSize) {
        end(std::nullopt);
    } else if (length && m_answer.size() >= *length) {
        end(m_answer.left(*length));
    }
}

void SocketQuestion::end(const std::optional<QByteArray> &answer) {
    if (const auto finished = std::exchange(m_finished, nullptr)) {
        m_socket.close();
        deleteLater();
        finished(answer);
    }
}

} // namespace morvane

#include "moc_SocketQuestion.cpp"
