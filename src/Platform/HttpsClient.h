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
    qsizetype maxAnswerSize = 1'048'576;           ///< bytes of the answer's body that are read
};

struct HttpsAnswer {
    int status = 0; ///< 0 for an answer that is not HTTP
    QList<std::pair<QByteArray, QByteArray>> headers;
    QByteArray body; ///< as much of it as the request wants

    /// The first header of this name, ignoring case.
    std::optional<QByteArray> header(const QByteArray &name) const {
        for (const auto &[key, value] : headers) {
            if (key.compare(name, Qt::CaseInsensitive) == 0) {
                return value;
            }
        }
        return std::nullopt;
    }
};

/// Sends requests to other machines. Main thread, which never waits.
class HttpsClient {
public:
    HttpsClient() = default;
    HttpsClient(const HttpsClient &) = delete;
    HttpsClient &operator=(const HttpsClient &) = delete;
    virtual ~HttpsClient() = default;

    using Finished = std::function<void(const std::optional<HttpsAnswer> &)>;

    /// Sends the request to the server in the address and to no other: a redirection is an answer
    /// like any other. Nothing is stored, not even cookies. `finished` is called once, on the main
    /// thread, after this call has returned; it gets none if there was no answer that could be
    /// trusted. There is no timeout. Destroying the task cancels the transfer.
    [[nodiscard]] virtual Task send(const HttpsRequest &request, Finished finished) = 0;
};

/// For a machine without a network: `finished` is never called.
class NullHttpsClient final : public HttpsClient {
public:
    Task send(const HttpsRequest &, Finished) override { return {}; }
};

} // namespace morvane
