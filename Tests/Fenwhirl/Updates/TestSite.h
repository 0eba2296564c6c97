// A web server on the loopback interface, and a proxy that connects every host name to it.
//
// The code under test requests its real address and verifies the certificate for the real name; only the
// route is the test's. Answers are raw bytes, so they can be as wrong as a test needs.

#pragma once

#include "Fenwhirl/Updates/TestAuthority.h"

#include <QByteArray>
#include <QList>
#include <QNetworkProxy>
#include <QObject>
#include <QSslServer>
#include <QSslSocket>
#include <QTcpServer>

#include <functional>

namespace Fenwhirl {

class TestSite : public QObject {
    Q_OBJECT

public:
    // Answers one request, given its head. The connection stays open until the handler closes it.
    using Handler = std::function<void(QSslSocket& connection, const QByteArray& request)>;

    explicit TestSite(const ServerIdentity& identity, QSsl::SslProtocol protocol = QSsl::TlsV1_2OrLater);

    void setHandler(Handler handler) { handler_ = std::move(handler); }

    // Gives the same answer to every request.
    enum class Then { stayConnected, close };
    void answerWith(const QByteArray& answer, Then then = Then::stayConnected);

    [[nodiscard]] QNetworkProxy proxy() const;

    // Makes the proxy connect to another server.
    void leadTo(quint16 port) { port_ = port; }

    // Decrypted heads of the requests that arrived, in order.
    [[nodiscard]] const QList<QByteArray>& requests() const { return requests_; }

    // "host:port" of each connection requested from the proxy, and "PLAIN" for each unencrypted request.
    [[nodiscard]] const QList<QByteArray>& destinations() const { return destinations_; }

private:
    void acceptEncrypted();
    void acceptAtProxy();
    void readAtProxy(QTcpSocket* client);

    QSslServer server_;
    QTcpServer proxy_;
    quint16 port_ = 0;
    Handler handler_;
    QList<QByteArray> requests_;
    QList<QByteArray> destinations_;
};

// An answer with its Content-Length.
[[nodiscard]] QByteArray httpAnswer(int status, const QByteArray& body, const QByteArray& moreHeaders = {});

// An answer that redirects to `location`.
[[nodiscard]] QByteArray httpRedirection(const QByteArray& location);

} // namespace Fenwhirl
