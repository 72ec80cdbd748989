#pragma once

#include "Platform/HttpsClient.h"
#include "Platform/Scheduler.h"

#include <QByteArray>
#include <QUrl>

#include <cstdint>
#include <functional>
#include <map>
#include <optional>

namespace morvane {

/// Where Claude's limits are asked for. Main thread.
class UsageEndpoint {
public:
    /// The one address of this build; nothing at run time gives another.
    static QUrl url();

    /// Client and scheduler must outlive the endpoint. Another address is for tests.
    UsageEndpoint(HttpsClient &client, Scheduler &scheduler, const QUrl &url = UsageEndpoint::url())
        : m_client(client), m_scheduler(scheduler), m_url(url) {}

    /// Asks with the token of the person whose limits it is about. `use` is called once, later on,
    /// with none when no answer came in 15 seconds; not at all once the endpoint is gone.
    void ask(const QByteArray &token, HttpsClient::Finished use);

    /// How long a server wants to be left alone, by its header "Retry-After", which is a number of
    /// seconds or a date: five minutes where it doesn't say, a day at the most.
    static Seconds retryAfter(const std::optional<QByteArray> &header, Date now);

    /// The longest that a server is left alone.
    static constexpr Seconds longestRetry{86'400};

private:
    HttpsClient &m_client;
    Scheduler &m_scheduler;
    const QUrl m_url;
    std::uint64_t m_lastNumber = 0;
    std::map<std::uint64_t, Task> m_pending; ///< the requests that have no answer yet
};

} // namespace morvane
