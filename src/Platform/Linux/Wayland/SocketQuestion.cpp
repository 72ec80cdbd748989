#include "Platform/Linux/Wayland/SocketQuestion.h"

#include <QTimer>

#include <chrono>
#include <utility>

namespace morvane {

namespace {

constexpr std::chrono::seconds answerLimit(2);
constexpr qsizetype longestAnswer = 1048576;

} // namespace

void SocketQuestion::ask(const QString &path, const QByteArray &question, const Length &length,
                         const Finished &finished, QObject *owner) {
    auto *self = new SocketQuestion(length, finished, owner);
    // A socket that isn't there says so before the call returns.
    QMetaObject::invokeMethod(
        self,
        [self, path, question] {
            connect(&self->m_socket, &QLocalSocket::connected, self,
                    [self, question] { self->m_socket.write(question); });
            self->m_socket.connectToServer(path);
        },
        Qt::QueuedConnection);
}

SocketQuestion::SocketQuestion(Length length, Finished finished, QObject *owner)
    : QObject(owner), m_length(std::move(length)), m_finished(std::move(finished)) {
    connect(&m_socket, &QLocalSocket::readyRead, this, &SocketQuestion::read);
    connect(&m_socket, &QLocalSocket::disconnected, this, [this] {
        read();
        end(m_length(m_answer) ? std::nullopt : std::optional(m_answer));
    });
    connect(&m_socket, &QLocalSocket::errorOccurred, this, [this](auto error) {
        if (error != QLocalSocket::PeerClosedError) {
            end(std::nullopt);
        }
    });
    QTimer::singleShot(answerLimit, this, [this] { end(std::nullopt); });
}

/// A socket that goes says that it has been disconnected.
SocketQuestion::~SocketQuestion() {
    m_socket.disconnect(this);
}

void SocketQuestion::read() {
    m_answer += m_socket.read(longestAnswer + 1 - m_answer.size());
    const auto length = m_length(m_answer);
    if (m_answer.size() > longestAnswer || length.value_or(0) > longestAnswer) {
        end(std::nullopt);
    } else if (length && m_answer.size() >= *length) {
        end(m_answer.left(*length));
    }
}

void SocketQuestion::end(const std::optional<QByteArray> &answer) {
    if (const auto finished = std::exchange(m_finished, nullptr)) {
        deleteLater();
        finished(answer);
    }
}

} // namespace morvane

#include "moc_SocketQuestion.cpp"
