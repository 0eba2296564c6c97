#include "Fenwhirl/Updates/UpdateFetch.h"

#include <QNetworkProxyFactory>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QSslConfiguration>
#include <QSslError>
#include <QSslSocket>

#include <algorithm>
#include <utility>

namespace Fenwhirl {

namespace {

class SystemProxies final : public QNetworkProxyFactory {
public:
    QList<QNetworkProxy> queryProxy(const QNetworkProxyQuery& query) override {
        return systemProxyForQuery(query);
    }
};

QSslConfiguration tlsOf(const UpdateTransport& transport) {
    QSslConfiguration tls = QSslConfiguration::defaultConfiguration();
    tls.setProtocol(QSsl::TlsV1_2OrLater);
    tls.setPeerVerifyMode(QSslSocket::VerifyPeer);
    // By OCSP stapling, a server may attach its authority's statement on whether the certificate was revoked.
    // Such a statement is checked.
    tls.setOcspStaplingEnabled(QSslSocket::isFeatureSupported(QSsl::SupportedFeature::Ocsp));
    if (transport.authorities) {
        tls.setCaCertificates(*transport.authorities);
    }
    return tls;
}

// Most servers attach no revocation status, which Qt reports like a certificate error. It is not one: Qt
// expects a status only because stapling is enabled. If there is any other error, the connection fails.
void acceptMissingRevocationStatus(QNetworkReply& reply, const QList<QSslError>& reports) {
    const bool onlyThat = std::all_of(reports.begin(), reports.end(), [](const QSslError& report) {
        return report.error() == QSslError::OcspNoResponseFound;
    });
    if (onlyThat) {
        reply.ignoreSslErrors(reports);
    }
}

QNetworkRequest requestOf(const QUrl& address, const UpdateTransport& transport, const QString& userAgent) {
    QNetworkRequest request(address);
    request.setHeader(QNetworkRequest::UserAgentHeader, userAgent);
    request.setSslConfiguration(tlsOf(transport));
    request.setAttribute(QNetworkRequest::CacheLoadControlAttribute, QNetworkRequest::AlwaysNetwork);
    request.setAttribute(QNetworkRequest::CacheSaveControlAttribute, false);
    request.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::AuthenticationReuseAttribute, QNetworkRequest::Manual);
    // For one small document HTTP/1.1 is sufficient, and simpler.
    request.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
    // Redirections are followed in this class, because Qt's own handling allows one too many and requests
    // some addresses twice.
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
    request.setDecompressedSafetyCheckThreshold(transport.sizeLimit);
    return request;
}

} // namespace

UpdateFetch::UpdateFetch(UpdateTransport transport, QString userAgent, QObject* parent)
    : QObject(parent)
    , transport_(std::move(transport))
    , userAgent_(std::move(userAgent))
    , network_(this)
    , idle_(this)
    , total_(this) {
    if (transport_.proxy) {
        network_.setProxy(*transport_.proxy);
    } else {
        network_.setProxyFactory(new SystemProxies); // the manager takes ownership
    }
    idle_.setSingleShot(true);
    idle_.setInterval(transport_.idleLimit);
    total_.setSingleShot(true);
    total_.setInterval(transport_.totalLimit);
    connect(&idle_, &QTimer::timeout, this, &UpdateFetch::giveUp);
    connect(&total_, &QTimer::timeout, this, &UpdateFetch::giveUp);
}

UpdateFetch::~UpdateFetch() = default;

void UpdateFetch::start(const QUrl& address, Completion completion) {
    completion_ = std::move(completion);
    total_.start();
    request(address);
}

void UpdateFetch::request(const QUrl& address) {
    idle_.start();
    body_.clear();
    reply_ = network_.get(requestOf(address, transport_, userAgent_));
    // Keeps unread data from piling up in memory. The buffer holds everything that is ever read, because with
    // a smaller one an encrypted connection of Qt 6.4 can stall.
    reply_->setReadBufferSize(transport_.sizeLimit + 1);
    const auto restartIdle = [this] { idle_.start(); };
    connect(reply_, &QNetworkReply::sslErrors, this, [reply = reply_](const QList<QSslError>& reports) {
        acceptMissingRevocationStatus(*reply, reports);
    });
    connect(reply_, &QNetworkReply::encrypted, this, restartIdle);
    connect(reply_, &QNetworkReply::metaDataChanged, this, restartIdle);
    connect(reply_, &QNetworkReply::readyRead, this, &UpdateFetch::readMore);
    connect(reply_, &QNetworkReply::finished, this, &UpdateFetch::finish);
}

void UpdateFetch::readMore() {
    idle_.start();
    takeWhatIsThere();
    if (body_.size() > transport_.sizeLimit) {
        giveUp();
    }
}

void UpdateFetch::takeWhatIsThere() {
    // Never readAll: a compressed answer is decompressed while it is read, to up to a
    // thousand times its size.
    body_ += reply_->read(transport_.sizeLimit + 1 - body_.size());
}

void UpdateFetch::finish() {
    if (!completion_) {
        return;
    }
    reply_->deleteLater();
    const QVariant redirection = reply_->attribute(QNetworkRequest::RedirectionTargetAttribute);
    if (reply_->error() == QNetworkReply::NoError && redirection.isValid()) {
        follow(reply_->url().resolved(redirection.toUrl()));
        return;
    }
    takeWhatIsThere();
    constexpr int ok = 200;
    const bool good = reply_->error() == QNetworkReply::NoError && body_.size() <= transport_.sizeLimit &&
                      reply_->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt() == ok;
    complete(good ? std::optional(std::exchange(body_, {})) : std::nullopt);
}

void UpdateFetch::follow(const QUrl& address) {
    const bool safe = address.isValid() && address.scheme() == QStringLiteral("https");
    if (safe && redirections_++ < transport_.redirectLimit) {
        request(address);
    } else {
        complete(std::nullopt);
    }
}

void UpdateFetch::giveUp() {
    complete(std::nullopt);
    reply_->abort();
}

void UpdateFetch::complete(std::optional<QByteArray> body) {
    idle_.stop();
    total_.stop();
    // The completion is taken out first: aborting the reply makes it finish, which must
    // not complete a second time.
    if (const Completion completion = std::exchange(completion_, nullptr)) {
        completion(std::move(body));
    }
}

} // namespace Fenwhirl
