// A certificate authority created for one test, which nothing outside the test trusts.

#pragma once

#include <QByteArray>
#include <QSslCertificate>
#include <QSslKey>
#include <QString>
#include <QTemporaryDir>

namespace Fenwhirl {

// What a server presents to its clients.
struct ServerIdentity {
    QSslCertificate certificate;
    QSslKey key;
};

class TestAuthority {
public:
    TestAuthority();

    [[nodiscard]] const QSslCertificate& certificate() const { return certificate_; }

    // A certificate for this host (which may begin with an asterisk), valid for this many days from now. With
    // 0 days it is no longer valid.
    [[nodiscard]] ServerIdentity identityFor(const QString& host, int days = 30);
    // A self-signed certificate.
    [[nodiscard]] ServerIdentity selfSigned(const QString& host);

    // The authority's signed statement about the last certificate of `identityFor` (an OCSP response), in a
    // file that a server can pass on.
    enum class Status { valid, revoked };
    [[nodiscard]] QString revocationStatusOfLastIdentity(Status status);

    // The folder that contains the last identity as "server.pem" and "server.key".
    [[nodiscard]] QString folder() const { return folder_.path(); }

private:
    void openssl(const QStringList& arguments) const;
    [[nodiscard]] QByteArray read(const QString& name) const;
    [[nodiscard]] ServerIdentity load(const QString& name) const;

    QTemporaryDir folder_;
    QSslCertificate certificate_;
};

} // namespace Fenwhirl
