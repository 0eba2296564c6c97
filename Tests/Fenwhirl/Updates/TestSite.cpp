#include "Fenwhirl/Updates/TestSite.h"

#include <QTcpSocket>

#include <gtest/gtest.h>

namespace Fenwhirl {

TestSite::TestSite(const ServerIdentity& identity, QSsl::SslProtocol protocol) {
    QSslConfiguration tls = QSslConfiguration::defaultConfiguration();
    tls.setLocalCertificate(identity.certificate);
    tls.setPrivateKey(identity.key);
    tls.setPeerVerifyMode(QSslSocket::VerifyNone);
    tls.setProtocol(protocol);
    // By default the TLS library refuses the old protocols that this server must be able to speak.
    tls.setBackendConfigurationOption("CipherString", QByteArray("DEFAULT:@SECLEVEL=0"));
    server_.setSslConfiguration(tls);
    connect(&server_, &QTcpServer::pendingConnectionAvailable, this, &TestSite::acceptEncrypted);
    connect(&proxy_, &QTcpServer::pendingConnectionAvailable, this, &TestSite::acceptAtProxy);
    EXPECT_TRUE(server_.listen(QHostAddress::LocalHost));
    EXPECT_TRUE(proxy_.listen(QHostAddress::LocalHost));
    port_ = server_.serverPort();
}

void TestSite::answerWith(const QByteArray& answer, Then then) {
    setHandler([answer, then](QSslSocket& connection, const QByteArray&) {
        connection.write(answer);
        if (then == Then::close) {
            connection.disconnectFromHost();
        }
    });
}

QNetworkProxy TestSite::proxy() const {
    return {QNetworkProxy::HttpProxy, QStringLiteral("127.0.0.1"), proxy_.serverPort()};
}

void TestSite::acceptEncrypted() {
    while (auto* const connection = qobject_cast<QSslSocket*>(server_.nextPendingConnection())) {
        connect(connection, &QSslSocket::disconnected, connection, &QObject::deleteLater);
        connect(connection, &QSslSocket::readyRead, this, [this, connection] {
            const QByteArray head = connection->peek(65536);
            if (!head.contains("\r\n\r\n")) {
                return;
            }
            requests_.append(connection->readAll());
            if (handler_) {
                handler_(*connection, requests_.last());
            }
        });
    }
}

void TestSite::acceptAtProxy() {
    while (QTcpSocket* const client = proxy_.nextPendingConnection()) {
        connect(client, &QTcpSocket::disconnected, client, &QObject::deleteLater);
        connect(client, &QTcpSocket::readyRead, this, [this, client] { readAtProxy(client); });
    }
}

void TestSite::readAtProxy(QTcpSocket* client) {
    if (auto* const onward = client->findChild<QTcpSocket*>()) {
        onward->write(client->readAll());
        return;
    }
    if (!client->peek(65536).contains("\r\n\r\n")) {
        return;
    }
    const QList<QByteArray> words = client->readAll().split(' ');
    if (words.value(0) != "CONNECT") {
        destinations_.append("PLAIN");
        client->disconnectFromHost();
        return;
    }
    destinations_.append(words.value(1));
    auto* const onward = new QTcpSocket(client);
    connect(onward, &QTcpSocket::readyRead, client, [client, onward] { client->write(onward->readAll()); });
    connect(onward, &QTcpSocket::disconnected, client, [client] { client->disconnectFromHost(); });
    connect(client, &QTcpSocket::disconnected, onward, [onward] { onward->disconnectFromHost(); });
    // Limit the buffer here, so that the server notices how fast the client reads.
    constexpr qint64 bufferBytes = 64 * 1024;
    connect(client, &QTcpSocket::bytesWritten, onward, [client, onward] {
        if (client->bytesToWrite() < bufferBytes && onward->bytesAvailable() > 0) {
            client->write(onward->readAll());
        }
    });
    onward->connectToHost(QHostAddress::LocalHost, port_);
    client->write("HTTP/1.1 200 Connection established\r\n\r\n");
}

QByteArray httpAnswer(int status, const QByteArray& body, const QByteArray& moreHeaders) {
    return "HTTP/1.1 " + QByteArray::number(status) +
           " Text\r\nContent-Length: " + QByteArray::number(body.size()) + "\r\nConnection: close\r\n" +
           moreHeaders + "\r\n" + body;
}

QByteArray httpRedirection(const QByteArray& location) {
    return httpAnswer(302, {}, "Location: " + location + "\r\n");
}

} // namespace Fenwhirl
