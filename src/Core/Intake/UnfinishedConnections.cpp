#include "Core/Intake/UnfinishedConnections.h"

#include <asio/post.hpp>

#include <algorithm>

namespace morvane {

namespace {

constexpr Seconds requestLimit(30);
constexpr int closeBatch = 4;
constexpr std::size_t closeCost = 4096; ///< what a batch counts for, in bytes read

} // namespace

void UnfinishedConnections::add(const Connection &connection) {
    m_connections.emplace_hint(m_connections.end(), connection->serial(),
                               Unfinished{connection, m_timers.now() + requestLimit});
    if (m_connections.size() > m_limit) {
        giveUpOldest();
    }
    if (!m_deadline) {
        armDeadline();
    }
}

/// One timer for all: it waits for the oldest, and by then mostly finds nothing to close.
void UnfinishedConnections::armDeadline() {
    m_deadline.reset();
    if (!m_connections.empty()) {
        const Seconds delay = m_connections.begin()->second.deadline - m_timers.now();
        m_deadline = m_timers.after(std::max(delay, Seconds(0)),
                                    [this] { asio::post(m_queue, [this] { closeOverdue(); }); });
    }
}

void UnfinishedConnections::closeOverdue() {
    const Date now = m_timers.now();
    while (!m_connections.empty() && m_connections.begin()->second.deadline <= now) {
        giveUpOldest();
    }
    armDeadline();
}

/// While we close a connection the kernel frees all unread bytes: a megabyte takes as long as a
/// request or two. So connections wait for a turn to be closed, unless too many wait already.
void UnfinishedConnections::giveUpOldest() {
    const auto oldest = m_connections.begin();
    if (m_givenUp.size() == m_limit) {
        oldest->second.connection->close();
    } else {
        oldest->second.connection->abandon();
        m_givenUp.push_back(oldest->second.connection);
        awaitClosing();
    }
    m_connections.erase(oldest);
}

/// They share their turns, under a serial number that no connection has.
void UnfinishedConnections::awaitClosing() {
    m_turns.await({m_closed, 0}, [this] { closeGivenUp(); });
}

/// Each batch raises the cost, so that a connection that has taken less goes first: a hook whose
/// head comes in parts has its turn however many are given up meanwhile.
void UnfinishedConnections::closeGivenUp() {
    for (int count = 0; count < closeBatch && !m_givenUp.empty(); ++count) {
        m_givenUp.front()->close();
        m_givenUp.pop_front();
    }
    m_closed = m_givenUp.empty() ? 0 : m_closed + closeCost;
    if (!m_givenUp.empty()) {
        awaitClosing();
    }
}

} // namespace morvane
