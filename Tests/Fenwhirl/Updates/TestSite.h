// A web server on the loopback interface, and a proxy through which every host name leads to it.
//
// The code under test asks for its real address and verifies the certificate for the real name; only the way
// there is the test's. Answers are bytes, so that they can be as wrong as needed.

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

class TestSite : public QObject {
    Q_OBJECT

public:
    // Answers one request, whose head is given, on a connection that stays open until it is closed here.
    using Handler = std::function<void(QSslSocket& connection, const QByteArray& request)>;

    explicit TestSite(const ServerIdentity& identity, QSsl::SslProtocol protocol = QSsl::TlsV1_2OrLater);

    void setHandler(Handler handler) { handler_ = std::move(handler); }

    // The same answer to every request.
    enum class Then { stayConnected, close };
    void answerWith(const QByteArray& answer, Then then = Then::stayConnected);

    [[nodiscard]] QNetworkProxy proxy() const;

    // Lets the proxy lead to another server than this one.
    void leadTo(quint16 port) { port_ = port; }

    // Heads of the requests that arrived, decrypted, in order.
    [[nodiscard]] const QList<QByteArray>& requests() const { return requests_; }

    // "host:port" of each connection asked of the proxy, and "PLAIN" for each request without encryption.
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

// An answer with its length.
[[nodiscard]] QByteArray httpAnswer(int status, const QByteArray& body, const QByteArray& moreHeaders = {});

// A redirection.
[[nodiscard]] QByteArray httpRedirection(const QByteArray& location);
