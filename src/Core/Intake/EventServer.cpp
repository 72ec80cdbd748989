#include "Core/Intake/EventServer.h"

#include "Core/Adapters/AgentRegistry.h"
#include "Core/Agents/AgentAdapter.h"

#include <asio/bind_executor.hpp>
#include <asio/post.hpp>

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <limits>
#include <sys/resource.h>
#include <sys/socket.h>

namespace morvane {

namespace {

constexpr unsigned candidateCount = 21;
constexpr rlim_t maxUnfinished = 512;
constexpr int acceptBatch = 16;
constexpr Seconds acceptRetryDelay(0.1);

} // namespace

EventServer::EventServer(const QString &token, std::uint16_t preferredPort, Handlers handlers,
                         Scheduler &main, Scheduler *timers)
    : m_token(token.toUtf8()), m_preferredPort(preferredPort), m_handlers(std::move(handlers)),
      m_main(main), m_timers(timers ? *timers : m_thread),
      m_listenerQueue(m_thread.context().get_executor()),
      m_turns(m_listenerQueue), m_surroundings{m_thread.context(),
                                               m_listenerQueue,
                                               m_turns,
                                               {m_token.constData(),
                                                static_cast<std::size_t>(m_token.size())}},
      m_acceptor(m_thread.context()),
      m_relay(std::make_shared<DecisionRelay>(
          Queue(m_thread.context().get_executor()), m_main, m_timers,
          DecisionRelay::Handlers{m_handlers.onEvent, m_handlers.onDecisionExpired,
                                  m_handlers.onDecisionHungUp})) {}

std::size_t EventServer::unfinishedLimit() {
    rlimit descriptors{};
    const bool isKnown = ::getrlimit(RLIMIT_NOFILE, &descriptors) == 0;
    return isKnown ? std::min(descriptors.rlim_cur / 4, maxUnfinished) : maxUnfinished;
}

EventServer::~EventServer() {
    m_thread.stop();
}

Result<void> EventServer::start() {
    QString lastError = tr("No free port");
    for (unsigned offset = 0; offset < candidateCount; ++offset) {
        const unsigned port = m_preferredPort + offset;
        if (port > std::numeric_limits<std::uint16_t>::max()) {
            break;
        }
        if (const asio::error_code error = bind(static_cast<std::uint16_t>(port))) {
            lastError = QString::fromStdString(error.message());
            continue;
        }
        asio::error_code ignored;
        m_boundPort = m_acceptor.local_endpoint(ignored).port();
        asio::post(m_listenerQueue, [this] { waitForConnections(); });
        m_thread.start();
        return {};
    }
    return Failure{lastError};
}

asio::error_code EventServer::bind(std::uint16_t port) {
    using asio::ip::tcp;
    const tcp::endpoint endpoint(asio::ip::address_v4::loopback(), port);
    asio::error_code error;
    m_acceptor.open(tcp::v4(), error);
    if (!error) {
        // Otherwise a program that we start and that outlives us would keep the port.
        ::fcntl(m_acceptor.native_handle(), F_SETFD, FD_CLOEXEC);
        // On Linux this shares no port that is listened on. It only lets a restart take its port
        // again while connections of the last run are still winding down.
        m_acceptor.set_option(tcp::acceptor::reuse_address(true), error);
    }
    if (!error) {
        m_acceptor.bind(endpoint, error);
    }
    if (!error) {
        m_acceptor.listen(asio::socket_base::max_listen_connections, error);
    }
    if (!error) {
        m_acceptor.native_non_blocking(true, error);
    }
    if (error) {
        asio::error_code ignored;
        m_acceptor.close(ignored);
    }
    return error;
}

void EventServer::waitForConnections() {
    const auto ready = [this](const asio::error_code &error) {
        if (!error) {
            acceptAll();
        }
    };
    m_acceptor.async_wait(asio::ip::tcp::acceptor::wait_read,
                          asio::bind_executor(m_listenerQueue, ready));
}

/// Accepts no more than a batch at once: endless callers would hold up decisions and time limits,
/// which run on the same thread.
void EventServer::acceptAll() {
    for (int count = 0; count < acceptBatch; ++count) {
        const int descriptor =
            ::accept4(m_acceptor.native_handle(), nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC);
        if (descriptor >= 0) {
            takeIn(descriptor);
        } else if (errno == EAGAIN) {
            waitForConnections();
            return;
        } else if (errno != EINTR && errno != ECONNABORTED) {
            retryAcceptLater();
            return;
        }
    }
    waitForConnections();
}

/// Out of descriptors, most likely. The connection stays ready to be accepted, so trying again at
/// once would spin.
void EventServer::retryAcceptLater() {
    m_acceptRetry = m_timers.after(acceptRetryDelay, [this] {
        asio::post(m_listenerQueue, [this] { waitForConnections(); });
    });
}

/// A request that arrives whole with its connection, as most do, takes no other one's place.
void EventServer::takeIn(int descriptor) {
    const auto connection =
        std::make_shared<EventConnection>(m_surroundings, descriptor, ++m_lastSerial);
    connection->read([this](const Connection &reader, const HttpRequest *request) {
        m_unfinished.remove(reader);
        if (request) {
            respond(reader, *request);
        }
    });
    if (connection->isReading()) {
        m_unfinished.add(connection);
    }
}

void EventServer::respond(const Connection &connection, const HttpRequest &request) {
    // Before anything else, so that a stranger can't tell one route from another.
    if (!request.isAuthorised) {
        connection->finish("401 Unauthorized");
    } else if (request.method == "POST" && request.path == "/usage") {
        respondToUsage(request);
        connection->finish("200 OK");
    } else if (request.method == "POST" && request.path == "/event") {
        respondToEvent(connection, request);
    } else {
        connection->finish("404 Not Found");
    }
}

void EventServer::respondToUsage(const HttpRequest &request) {
    const auto agent = agentKind(request.value(HttpHeader::agent));
    if (agent) {
        m_main.post([handler = m_handlers.onUsagePayload, agent = *agent,
                     body = QByteArrayView(request.body).toByteArray()] { handler(agent, body); });
    }
}

/// The adapter for the release of the calling program. An agent that isn't named, or isn't known,
/// counts as Claude Code here.
const AgentAdapter &EventServer::adapterFor(const HttpRequest &request, const HookOrigin &origin) {
    const AgentKind agent = agentKind(request.value(HttpHeader::agent)).value_or(defaultAgentKind);
    const QString program = request.text(HttpHeader::program);
    return AgentRegistry::adapter(
        agent, origin.process ? m_programs.of(agent, program, *origin.process, m_timers)
                              : m_programs.of(agent, program));
}

void EventServer::respondToEvent(const Connection &connection, const HttpRequest &request) {
    const HookOrigin origin = HookOrigin::of(request);
    const AgentAdapter &adapter = adapterFor(request, origin);
    const QString nativeName = request.text(HttpHeader::hookEvent);
    auto event = HookEvent::decode(adapter, nativeName, request.body, origin);
    if (event && mayPark(request, adapter, nativeName)) {
        m_relay->park(std::move(*event), adapter, connection,
                      QByteArrayView(request.body).toByteArray());
        return;
    }
    if (event) {
        m_main.post([handler = m_handlers.onEvent, event = std::move(*event)] { handler(event); });
    }
    connection->finish("200 OK");
}

bool EventServer::mayPark(const HttpRequest &request, const AgentAdapter &adapter,
                          const QString &nativeName) const {
    return request.header(HttpHeader::decision) == "1" && m_handlers.decisionsEnabled() &&
           adapter.decisionEvents().contains(nativeName);
}

void EventServer::resolve(const QString &decisionID, const AgentDecision &decision) {
    m_relay->resolve(decisionID, decision);
}

void EventServer::releaseAllDecisions() {
    m_relay->releaseAll();
}

} // namespace morvane
