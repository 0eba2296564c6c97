// An authority of certificates that is made on the spot and that nobody knows but the test.

#pragma once

#include <QByteArray>
#include <QSslCertificate>
#include <QSslKey>
#include <QString>
#include <QTemporaryDir>

// What a server shows to its clients.
struct ServerIdentity {
    QSslCertificate certificate;
    QSslKey key;
};

class TestAuthority {
public:
    TestAuthority();

    [[nodiscard]] const QSslCertificate& certificate() const { return certificate_; }

    // A certificate for that host (an asterisk may lead), valid for as many days from now; 0: no longer.
    [[nodiscard]] ServerIdentity identityFor(const QString& host, int days = 30);
    // One that vouches for itself.
    [[nodiscard]] ServerIdentity selfSigned(const QString& host);

    // The authority's signed word on the last certificate of `identityFor`, as a file that a server passes
    // on.
    enum class Status { valid, revoked };
    [[nodiscard]] QString wordOnLastIdentity(Status status);

    // Where the last identity lies as "server.pem" and "server.key".
    [[nodiscard]] QString folder() const { return folder_.path(); }

private:
    void openssl(const QStringList& arguments) const;
    [[nodiscard]] QByteArray read(const QString& name) const;
    [[nodiscard]] ServerIdentity load(const QString& name) const;

    QTemporaryDir folder_;
    QSslCertificate certificate_;
};
