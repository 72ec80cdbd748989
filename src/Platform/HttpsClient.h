#pragma once

#include "Platform/Task.h"

#include <QByteArray>
#include <QList>
#include <QUrl>

#include <functional>
#include <optional>
#include <utility>

namespace morvane {

struct HttpsRequest {
    QUrl url;
    QList<std::pair<QByteArray, QByteArray>> headers;
    std::optional<QByteArray> body = std::nullopt; ///< posted; without one the request is a GET
    qsizetype longestAnswer = 1'048'576;           ///< bytes of the answer's body that are read
};

struct HttpsAnswer {
    int status = 0; ///< 0 for an answer that is not HTTP
    QList<std::pair<QByteArray, QByteArray>> headers;
    QByteArray body; ///< as much of it as the request wants

    /// The first of this name, whatever its case.
    std::optional<QByteArray> header(const QByteArray &name) const {
        for (const auto &[key, value] : headers) {
            if (key.compare(name, Qt::CaseInsensitive) == 0) {
                return value;
            }
        }
        return std::nullopt;
    }
};

/// Asks other machines. Main thread, which never waits.
class HttpsClient {
public:
    HttpsClient() = default;
    HttpsClient(const HttpsClient &) = delete;
    HttpsClient &operator=(const HttpsClient &) = delete;
    virtual ~HttpsClient() = default;

    using Finished = std::function<void(const std::optional<HttpsAnswer> &)>;

    /// Sends the request to the server that the address names and to no other: a redirection is an
    /// answer like any other. Nothing is stored, of cookies either. `finished` is called once, on
    /// the main thread and never before this has returned, with none when there was no answer that
    /// could be trusted; there is no limit of time. The end of the task ends the transfer.
    [[nodiscard]] virtual Task send(const HttpsRequest &request, Finished finished) = 0;
};

/// That of a machine without a network, which has no answer ever.
class NullHttpsClient final : public HttpsClient {
public:
    Task send(const HttpsRequest &, Finished) override { return {}; }
};

} // namespace morvane
