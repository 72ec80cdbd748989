#pragma once

#include "Core/Adapters/ProgramReleases.h"
#include "Core/Agents/AgentDecision.h"
#include "Core/Agents/AgentKind.h"
#include "Core/Intake/DecisionRelay.h"
#include "Core/Intake/EventConnection.h"
#include "Core/Intake/HookEvent.h"
#include "Core/Intake/IoThread.h"
#include "Core/Intake/UnfinishedConnections.h"
#include "Platform/Result.h"

#include <QByteArray>
#include <QCoreApplication>
#include <asio/ip/tcp.hpp>

#include <cstdint>
#include <functional>
#include <memory>

namespace morvane {

/// The way into the system from the agents: a minimal HTTP/1.1 server on the IPv4 loopback
/// address. It takes one POST per hook, checks the shared token, and hands the decoded event to
/// the main thread. A hook that waits for a person's decision is kept open until `resolve`.
///
/// Made and used on the main thread by `AppController`. A thread of its own serves the connections,
/// reading on `m_listenerQueue`, so that a busy interface never holds up an agent. No answer
/// reports a fault of ours or of the payload: whatever is posted with the token to one of the two
/// paths gets "200 OK".
class EventServer {
    Q_DECLARE_TR_FUNCTIONS(EventServer)

public:
    /// What the server calls. All but the first have a default.
    struct Handlers {
        /// On the main thread: a hook has reported an event.
        std::function<void(const HookEvent &)> onEvent;
        /// On the main thread: nobody can decide this any more; the hook is answered or gone.
        std::function<void(const QString &decisionID)> onDecisionExpired = [](const QString &) {};
        /// On the main thread: the same, and the agent may have been interrupted.
        std::function<void(const QString &decisionID)> onDecisionHungUp = [](const QString &) {};
        /// On the main thread: the body of a status line's post.
        std::function<void(AgentKind, const QByteArray &)> onUsagePayload =
            [](AgentKind, const QByteArray &) {};
        /// On the server's thread, for every hook that could wait: whether it may.
        std::function<bool()> decisionsEnabled = [] { return false; };
        /// On the server's thread: as `Processes::fileOf`.
        ProgramReleases::FileOf fileOf = &ProgramReleases::ourFile;
    };

    /// Doesn't listen yet. `main` takes the callbacks to the main thread. `timers`, if given, runs
    /// the time limits instead of the server's thread. Throws a `std::system_error` if no
    /// descriptor is left for it.
    EventServer(const QString &token, std::uint16_t preferredPort, Handlers handlers,
                Scheduler &main, Scheduler *timers = nullptr);
    ~EventServer();

    /// How many connections may lack a whole request at one time; one more makes the server give up
    /// the oldest. 512, or a quarter of the process's descriptors if that is less, so that enough
    /// are left for the connections that matter. As many that were given up may still be open.
    static std::size_t unfinishedLimit();

    /// Binds the preferred port, or the next free one of the 20 above it, and begins to serve.
    /// Fails with the reason why the last of them could not be bound. Throws a `std::system_error`
    /// if no thread can be started.
    Result<void> start();

    /// The port that was really bound; 0 before.
    std::uint16_t boundPort() const { return m_boundPort; }

    /// Answers a hook that waits, in its agent's own form; the first answer wins. Safe from any
    /// thread; returns at once.
    void resolve(const QString &decisionID, const AgentDecision &decision);

    /// Releases every hook that waits, without an answer. Safe from any thread; returns at once.
    void releaseAllDecisions();

private:
    using Queue = EventConnection::Queue;
    using Connection = EventConnection::Pointer;

    asio::error_code bind(std::uint16_t port);
    void waitForConnections();
    void acceptAll();
    void takeIn(int descriptor);
    void retryAcceptLater();
    void respond(const Connection &connection, const HttpRequest &request);
    void respondToUsage(const HttpRequest &request);
    void respondToEvent(const Connection &connection, const HttpRequest &request);
    const AgentAdapter &adapterFor(const HttpRequest &request, const HookOrigin &origin);
    bool mayPark(const HttpRequest &request, const AgentAdapter &adapter,
                 const QString &nativeName) const;

    const QByteArray m_token;
    const std::uint16_t m_preferredPort;
    std::uint16_t m_boundPort = 0;
    const Handlers m_handlers;
    Scheduler &m_main;

    // The thread is declared before all that its context must outlive.
    IoThread m_thread;
    Scheduler &m_timers;
    Queue m_listenerQueue;
    Turns m_turns;
    const EventConnection::Surroundings m_surroundings;
    asio::ip::tcp::acceptor m_acceptor;
    const std::shared_ptr<DecisionRelay> m_relay;
    ProgramReleases m_programs{m_handlers.fileOf};
    UnfinishedConnections m_unfinished{m_listenerQueue, m_turns, m_timers, unfinishedLimit()};
    std::uint64_t m_lastSerial = 0;
    Task m_acceptRetry;
};

} // namespace morvane
