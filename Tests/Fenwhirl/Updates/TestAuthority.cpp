#include "Fenwhirl/Updates/TestAuthority.h"

#include <QFile>
#include <QProcess>
#include <QProcessEnvironment>

#include <gtest/gtest.h>

namespace Fenwhirl {

namespace {

QStringList newKey(const QString& file) {
    return {QStringLiteral("-newkey"),
            QStringLiteral("ec"),
            QStringLiteral("-pkeyopt"),
            QStringLiteral("ec_paramgen_curve:P-256"),
            QStringLiteral("-nodes"),
            QStringLiteral("-keyout"),
            file};
}

// What the authority's certificate says about itself. With a configuration of its own, openssl makes the same
// certificate on every computer.
constexpr auto settings = R"([req]
distinguished_name = name
x509_extensions = authority
[name]
[authority]
basicConstraints = critical, CA:TRUE
subjectKeyIdentifier = hash
)";

} // namespace

TestAuthority::TestAuthority() {
    QFile file(folder_.filePath(QStringLiteral("settings")));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(settings);
    file.close();
    openssl(QStringList{QStringLiteral("req"), QStringLiteral("-x509"), QStringLiteral("-days"),
                        QStringLiteral("30"), QStringLiteral("-subj"),
                        QStringLiteral("/CN=Authority of a test"), QStringLiteral("-out"),
                        QStringLiteral("authority.pem")} +
            newKey(QStringLiteral("authority.key")));
    certificate_ = QSslCertificate(read(QStringLiteral("authority.pem")));
    EXPECT_FALSE(certificate_.isNull());
}

ServerIdentity TestAuthority::identityFor(const QString& host, int days) {
    openssl(QStringList{QStringLiteral("req"), QStringLiteral("-new"), QStringLiteral("-subj"),
                        QStringLiteral("/CN=A server"), QStringLiteral("-out"),
                        QStringLiteral("server.csr")} +
            newKey(QStringLiteral("server.key")));
    QFile names(folder_.filePath(QStringLiteral("names")));
    EXPECT_TRUE(names.open(QIODevice::WriteOnly));
    names.write("subjectAltName=DNS:" + host.toUtf8() + '\n');
    names.close();
    openssl({QStringLiteral("x509"), QStringLiteral("-req"), QStringLiteral("-in"),
             QStringLiteral("server.csr"), QStringLiteral("-CA"), QStringLiteral("authority.pem"),
             QStringLiteral("-CAkey"), QStringLiteral("authority.key"), QStringLiteral("-CAcreateserial"),
             QStringLiteral("-extfile"), QStringLiteral("names"), QStringLiteral("-days"),
             QString::number(days), QStringLiteral("-out"), QStringLiteral("server.pem")});
    return load(QStringLiteral("server"));
}

ServerIdentity TestAuthority::selfSigned(const QString& host) {
    openssl(QStringList{QStringLiteral("req"), QStringLiteral("-x509"), QStringLiteral("-days"),
                        QStringLiteral("30"), QStringLiteral("-subj"), QStringLiteral("/CN=A server"),
                        QStringLiteral("-addext"), QStringLiteral("subjectAltName=DNS:") + host,
                        QStringLiteral("-out"), QStringLiteral("alone.pem")} +
            newKey(QStringLiteral("alone.key")));
    return load(QStringLiteral("alone"));
}

QString TestAuthority::revocationStatusOfLastIdentity(Status status) {
    const QByteArray serial =
        QSslCertificate(read(QStringLiteral("server.pem"))).serialNumber().replace(':', "").toUpper();
    QFile index(folder_.filePath(QStringLiteral("index")));
    EXPECT_TRUE(index.open(QIODevice::WriteOnly | QIODevice::Truncate));
    index.write(status == Status::revoked ? "R\t400101000000Z\t200101000000Z\t" : "V\t400101000000Z\t\t");
    index.write(serial + "\tunknown\t/CN=A server\n");
    index.close();
    openssl({QStringLiteral("ocsp"), QStringLiteral("-index"), QStringLiteral("index"), QStringLiteral("-CA"),
             QStringLiteral("authority.pem"), QStringLiteral("-rsigner"), QStringLiteral("authority.pem"),
             QStringLiteral("-rkey"), QStringLiteral("authority.key"), QStringLiteral("-issuer"),
             QStringLiteral("authority.pem"), QStringLiteral("-cert"), QStringLiteral("server.pem"),
             QStringLiteral("-ndays"), QStringLiteral("1"), QStringLiteral("-respout"),
             QStringLiteral("word"), QStringLiteral("-noverify")});
    return folder_.filePath(QStringLiteral("word"));
}

void TestAuthority::openssl(const QStringList& arguments) const {
    QProcess process;
    process.setWorkingDirectory(folder_.path());
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("OPENSSL_CONF"), folder_.filePath(QStringLiteral("settings")));
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral("openssl"), arguments);
    EXPECT_TRUE(process.waitForFinished());
    EXPECT_EQ(process.exitCode(), 0) << process.readAllStandardError().constData();
}

QByteArray TestAuthority::read(const QString& name) const {
    QFile file(folder_.filePath(name));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return file.readAll();
}

ServerIdentity TestAuthority::load(const QString& name) const {
    ServerIdentity identity{QSslCertificate(read(name + QStringLiteral(".pem"))),
                            QSslKey(read(name + QStringLiteral(".key")), QSsl::Ec)};
    EXPECT_FALSE(identity.certificate.isNull());
    EXPECT_FALSE(identity.key.isNull());
    return identity;
}

} // namespace Fenwhirl
