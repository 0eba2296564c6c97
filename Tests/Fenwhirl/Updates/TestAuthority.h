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

    // A certificate for that host (an asterisk may lead), valid for as many days from now; negative: no
    // longer.
    [[nodiscard]] ServerIdentity identityFor(const QString& host, int days = 30);
    // One that vouches for itself.
    [[nodiscard]] ServerIdentity selfSigned(const QString& host);

private:
    void openssl(const QStringList& arguments) const;
    [[nodiscard]] QByteArray read(const QString& name) const;
    [[nodiscard]] ServerIdentity load(const QString& name) const;

    QTemporaryDir folder_;
    QSslCertificate certificate_;
};
