#include "Platform/Linux/Network/NetworkHttpsClient.h"

#include <QNetworkProxyFactory>
#include <QNetworkReply>
#include <QPointer>

#include <algorithm>
#include <utility>

namespace morvane {

namespace {

constexpr qint64 bufferSize = 1'048'576;

QNetworkRequest networkRequest(const HttpsRequest &request) {
    QNetworkRequest result(request.url);
    for (const auto &[name, value] : request.headers) {
        result.setRawHeader(name, value);
    }
    result.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                        QNetworkRequest::ManualRedirectPolicy);
    for (const auto attribute :
         {QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::CookieSaveControlAttribute,
          QNetworkRequest::AuthenticationReuseAttribute}) {
        result.setAttribute(attribute, QNetworkRequest::Manual);
    }
    return result;
}

/// One request and its answer. Deletes itself once it has finished or was cancelled.
class Transfer : public QObject {
public:
    Transfer(const HttpsRequest &request, HttpsClient::Finished finished)
        : m_request(request), m_finished(std::move(finished)) {}

    void start(QNetworkAccessManager &manager) {
        if (!m_finished) {
            return;
        }
        const QNetworkRequest request = networkRequest(m_request);
        m_reply = m_request.body ? manager.post(request, *m_request.body) : manager.get(request);
        m_reply->setParent(this);
        m_reply->setReadBufferSize(bufferSize);
        connect(m_reply, &QNetworkReply::readyRead, this, [this] { read(); });
        connect(m_reply, &QNetworkReply::finished, this, [this] { finish(); });
    }

    void cancel() {
        m_finished = nullptr;
        if (m_reply) {
            m_reply->abort();
        }
        deleteLater();
    }

private:
    void read() {
        readOn();
        if (m_body.size() == m_request.maxAnswerSize) {
            finish();
        }
    }

    void finish() {
        if (const auto finished = std::exchange(m_finished, nullptr)) {
            readOn();
            finished(answer());
            m_reply->abort();
            deleteLater();
        }
    }

    /// Asks for no more bytes than there are, since Qt allocates whatever size it is asked for.
    void readOn() {
        m_body += m_reply->read(
            std::min<qint64>(m_request.maxAnswerSize - m_body.size(), m_reply->bytesAvailable()));
    }

    /// An answer with an error status counts; one that broke off doesn't.
    std::optional<HttpsAnswer> answer() const {
        const int status = m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
        if (m_reply->error() != QNetworkReply::NoError && status < 400) {
            return std::nullopt;
        }
        HttpsAnswer result{status, {}, m_body};
        for (const auto &[name, value] : m_reply->rawHeaderPairs()) {
            result.headers.append({name, value});
        }
        return result;
    }

    const HttpsRequest m_request;
    HttpsClient::Finished m_finished; ///< empty once it has been called or cancelled
    QNetworkReply *m_reply = nullptr;
    QByteArray m_body;
};

} // namespace

/// The proxies that the pool has found, by address: a manager asks for a proxy only when it begins
/// a request, and may have been given the next request by then.
class NetworkHttpsClient::FoundProxies : public QNetworkProxyFactory {
public:
    QList<QNetworkProxy> queryProxy(const QNetworkProxyQuery &query) override {
        return {byAddress.value(query.url(), QNetworkProxy::NoProxy)};
    }

    QHash<QUrl, QNetworkProxy> byAddress;
};

NetworkHttpsClient::NetworkHttpsClient(Scheduler &scheduler, BackgroundPool &background)
    : m_scheduler(scheduler), m_background(background) {}

QNetworkAccessManager &NetworkHttpsClient::manager() {
    if (!m_manager) {
        m_manager.emplace();
        m_manager->setRedirectPolicy(QNetworkRequest::ManualRedirectPolicy);
        m_proxies = new FoundProxies;
        m_manager->setProxyFactory(m_proxies);
    }
    return *m_manager;
}

Task NetworkHttpsClient::send(const HttpsRequest &request, Finished finished) {
    auto *transfer = new Transfer(request, std::move(finished));
    transfer->setParent(&m_transfers);
    m_background.compute(
        [url = request.url] {
            return QNetworkProxyFactory::systemProxyForQuery(QNetworkProxyQuery(url));
        },
        m_scheduler, transfer,
        [this, transfer, url = request.url](const QList<QNetworkProxy> &proxies) {
            QNetworkAccessManager &all = manager();
            m_proxies->byAddress.insert(url, proxies.value(0, QNetworkProxy::NoProxy));
            transfer->start(all);
        });
    return Task([pending = QPointer<Transfer>(transfer)] {
        if (pending) {
            pending->cancel();
        }
    });
}

} // namespace morvane
