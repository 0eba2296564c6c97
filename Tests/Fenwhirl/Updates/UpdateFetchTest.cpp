#include "Fenwhirl/Updates/UpdateFetch.h"

#include "Fenwhirl/Updates/TestAuthority.h"
#include "Fenwhirl/Updates/TestSite.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QProcess>
#include <QTemporaryFile>
#include <QTimer>

#include <gtest/gtest.h>
#include <memory>
#include <utility>

namespace Fenwhirl {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

// Debian's own configuration refuses old protocols to every program. This one allows them, so that only the
// program itself can refuse them. OpenSSL reads it when TLS is first used.
const bool oldProtocolsAreAllowed = [] {
    static QTemporaryFile settings;
    EXPECT_TRUE(settings.open());
    settings.write("openssl_conf = start\n[start]\nssl_conf = tls\n[tls]\nsystem_default = all\n"
                   "[all]\nMinProtocol = TLSv1\nCipherString = DEFAULT@SECLEVEL=0\n");
    settings.flush();
    return qputenv("OPENSSL_CONF", settings.fileName().toLocal8Bit());
}();

const QString host = u"fenwhirl.example"_s;
const QUrl address(u"https://fenwhirl.example/maj/fenwhirl.json"_s);

// A limit for tests that wait until it is over. Connection, proxy and handshake fit into it even on a busy
// computer.
constexpr auto shortLimit = 2s;

UpdateTransport transportTo(const TestSite& site, const TestAuthority& authority) {
    UpdateTransport transport;
    transport.authorities = QList{authority.certificate()};
    transport.proxy = site.proxy();
    return transport;
}

// The result of a request. Fails the test when the request does not complete.
std::optional<QByteArray> fetch(const UpdateTransport& transport, const QUrl& url = address) {
    UpdateFetch request(transport, u"Fenwhirl/0.1"_s);
    QEventLoop loop;
    std::optional<QByteArray> result;
    int completions = 0;
    request.start(url, [&](const std::optional<QByteArray>& body) {
        result = body;
        ++completions;
        loop.quit();
    });
    QTimer::singleShot(60s, &loop, &QEventLoop::quit);
    loop.exec();
    QCoreApplication::processEvents();
    EXPECT_EQ(completions, 1);
    return result;
}

// A site without any fault.
class UpdateFetching : public testing::Test {
protected:
    TestAuthority authority;
    TestSite site{authority.identityFor(host)};
    UpdateTransport transport = transportTo(site, authority);
};

// Whether a client that accepts everything can talk to the site in this protocol. Otherwise, refusing it
// would prove nothing.
bool speaks(const TestSite& site, QSsl::SslProtocol protocol) {
    QSslConfiguration tls = QSslConfiguration::defaultConfiguration();
    tls.setProtocol(protocol);
    tls.setPeerVerifyMode(QSslSocket::VerifyNone);
    tls.setBackendConfigurationOption("CipherString", QByteArray("DEFAULT:@SECLEVEL=0"));
    QSslSocket client;
    client.setSslConfiguration(tls);
    client.setProxy(site.proxy());
    QEventLoop loop;
    QObject::connect(&client, &QSslSocket::encrypted, &loop, &QEventLoop::quit);
    QObject::connect(&client, &QSslSocket::errorOccurred, &loop, &QEventLoop::quit);
    QTimer::singleShot(60s, &loop, &QEventLoop::quit);
    client.connectToHostEncrypted(host, 443);
    loop.exec();
    return client.isEncrypted() && client.sessionProtocol() == protocol;
}

// Writes up to `total` bytes as fast as the connection accepts them, and counts them.
void flood(QSslSocket& connection, qint64 total, const std::shared_ptr<qint64>& sent) {
    const auto more = [&connection, total, sent] {
        constexpr qint64 piece = 16 * 1024;
        while (*sent < total && connection.bytesToWrite() + connection.encryptedBytesToWrite() < 4 * piece) {
            connection.write(QByteArray(piece, ' '));
            *sent += piece;
        }
    };
    QObject::connect(&connection, &QSslSocket::encryptedBytesWritten, &connection, more);
    more();
}

// The peak memory of this process in KiB since the last call of this function.
qint64 peakKiBSinceLastCall() {
    QFile status(u"/proc/self/status"_s);
    EXPECT_TRUE(status.open(QIODevice::ReadOnly));
    qint64 peak = 0;
    for (const QByteArray& line : status.readAll().split('\n')) {
        if (line.startsWith("VmHWM:")) {
            peak = line.mid(6, line.size() - 9).trimmed().toLongLong();
        }
    }
    QFile reset(u"/proc/self/clear_refs"_s);
    EXPECT_TRUE(reset.open(QIODevice::WriteOnly));
    // Writing 5 resets the peak (VmHWM) to the current size.
    reset.write("5");
    return peak;
}

// A reader that does not stop grows by gigabytes; its server runs in this process, too.
constexpr qint64 acceptableGrowthKiB = 16 * 1024;

} // namespace

TEST_F(UpdateFetching, YieldsTheBodyOfAGoodAnswer) {
    site.answerWith(httpAnswer(200, "hello"));
    EXPECT_EQ(fetch(transport), "hello");
    EXPECT_EQ(site.destinations(), QList<QByteArray>{"fenwhirl.example:443"});
}

TEST_F(UpdateFetching, AsksWithoutCookiesCacheOrIdentity) {
    site.answerWith(httpAnswer(200, "x", "Set-Cookie: a=b\r\nCache-Control: max-age=3600\r\n"));
    (void)fetch(transport);
    (void)fetch(transport);
    ASSERT_EQ(site.requests().size(), 2);
    for (const QByteArray& request : site.requests()) {
        EXPECT_TRUE(request.startsWith("GET /maj/fenwhirl.json HTTP/1.1\r\n")) << request.constData();
        const QByteArray lower = request.toLower(); // like the header names of newer Qt versions
        EXPECT_TRUE(lower.contains("\r\nuser-agent: fenwhirl/0.1\r\n")) << request.constData();
        EXPECT_FALSE(lower.contains("cookie"));
        EXPECT_FALSE(lower.contains("authorization"));
        EXPECT_FALSE(lower.contains("if-"));
        EXPECT_TRUE(lower.contains("no-cache"));
    }
}

TEST_F(UpdateFetching, AcceptsStatus200Only) {
    for (const int status : {201, 203, 204, 206, 304, 400, 401, 403, 404, 407, 418, 500, 503}) {
        site.answerWith(httpAnswer(status, status == 204 || status == 304 ? "" : "body"));
        EXPECT_FALSE(fetch(transport)) << status;
    }
}

TEST_F(UpdateFetching, RefusesAnswersThatAreNoHttp) {
    for (const char* answer :
         {"", "\r\n\r\n", "garbage", "HTTP/1.1", "HTTP/1.1 abc Text\r\n\r\n", "SSH-2.0-x\r\n"}) {
        site.answerWith(answer, TestSite::Then::close);
        EXPECT_FALSE(fetch(transport)) << answer;
    }
}

TEST_F(UpdateFetching, RefusesABodyThatEndsTooEarly) {
    site.answerWith("HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\n{\"version\"", TestSite::Then::close);
    EXPECT_FALSE(fetch(transport));
    site.answerWith("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\nff\r\nabc", TestSite::Then::close);
    EXPECT_FALSE(fetch(transport));
}

TEST_F(UpdateFetching, TakesABodyWithoutLength) {
    site.answerWith("HTTP/1.0 200 OK\r\n\r\nall of it", TestSite::Then::close);
    EXPECT_EQ(fetch(transport), "all of it");
}

TEST_F(UpdateFetching, EndsWhenTheServerClosesAtOnce) {
    site.setHandler([](QSslSocket& connection, const QByteArray&) { connection.abort(); });
    EXPECT_FALSE(fetch(transport));
}

TEST_F(UpdateFetching, EndsWhenNobodyListens) {
    transport.proxy = QNetworkProxy(QNetworkProxy::NoProxy);
    EXPECT_FALSE(fetch(transport, QUrl(u"https://127.0.0.1:1/x"_s)));
}

TEST(UpdateFetchTls, RefusesCertificatesThatAreNotGood) {
    TestAuthority authority;
    TestAuthority stranger;

    struct Case {
        const char* what;
        ServerIdentity identity;
    };

    for (const Case& bad : {
             Case{"expired", authority.identityFor(host, 0)},
             Case{"for another host", authority.identityFor(u"other.example"_s)},
             Case{"for subdomains only", authority.identityFor(u"*.fenwhirl.example"_s)},
             Case{"of an unknown authority", stranger.identityFor(host)},
             Case{"self-signed", authority.selfSigned(host)},
         }) {
        TestSite site(bad.identity);
        site.answerWith(httpAnswer(200, "hello"));
        EXPECT_FALSE(fetch(transportTo(site, authority))) << bad.what;
        EXPECT_TRUE(site.requests().isEmpty()) << bad.what << ": not even asked";
        EXPECT_EQ(site.destinations().size(), 1) << bad.what << ": and not tried again";
    }
}

TEST(UpdateFetchTls, RefusesAnAuthorityThatTheSystemDoesNotKnow) {
    TestAuthority authority;
    TestSite site(authority.identityFor(host));
    site.answerWith(httpAnswer(200, "hello"));
    UpdateTransport transport = transportTo(site, authority);
    transport.authorities.reset();
    EXPECT_FALSE(fetch(transport));
}

// Qt's server cannot pass on an OCSP response; openssl's s_server can.
TEST(UpdateFetchTls, RefusesARevokedCertificate) {
    TestAuthority authority;
    TestSite site(authority.identityFor(host));
    QDir(authority.folder()).mkdir(u"maj"_s);
    QFile document(authority.folder() + u"/maj/fenwhirl.json"_s);
    ASSERT_TRUE(document.open(QIODevice::WriteOnly));
    document.write(httpAnswer(200, "hello"));
    document.close();
    for (const auto status : {TestAuthority::Status::valid, TestAuthority::Status::revoked}) {
        QProcess server;
        server.setWorkingDirectory(authority.folder());
        server.start(u"openssl"_s,
                     {u"s_server"_s, u"-accept"_s, u"127.0.0.1:0"_s, u"-cert"_s, u"server.pem"_s, u"-key"_s,
                      u"server.key"_s, u"-status_file"_s, authority.revocationStatusOfLastIdentity(status),
                      u"-cert_chain"_s, u"authority.pem"_s, u"-HTTP"_s});
        QByteArray printed;
        while (!printed.contains("ACCEPT ") || !printed.endsWith('\n')) {
            ASSERT_TRUE(server.waitForReadyRead(20'000)) << server.readAllStandardError().constData();
            printed += server.readAllStandardOutput();
        }
        site.leadTo(printed.mid(printed.lastIndexOf(':') + 1).trimmed().toUShort());
        const auto body = fetch(transportTo(site, authority));
        EXPECT_EQ(body.has_value(), status == TestAuthority::Status::valid);
        server.kill();
        server.waitForFinished();
    }
}

QT_WARNING_PUSH

QT_WARNING_DISABLE_DEPRECATED
TEST(UpdateFetchTls, RefusesOldProtocols) {
    ASSERT_TRUE(oldProtocolsAreAllowed);
    TestAuthority authority;
    const ServerIdentity identity = authority.identityFor(host);
    for (const QSsl::SslProtocol protocol : {QSsl::TlsV1_0, QSsl::TlsV1_1}) {
        TestSite site(identity, protocol);
        site.answerWith(httpAnswer(200, "hello"));
        ASSERT_TRUE(speaks(site, protocol)) << protocol;
        EXPECT_FALSE(fetch(transportTo(site, authority))) << protocol;
        EXPECT_TRUE(site.requests().isEmpty());
    }
    for (const QSsl::SslProtocol protocol : {QSsl::TlsV1_2, QSsl::TlsV1_3}) {
        TestSite site(identity, protocol);
        site.answerWith(httpAnswer(200, "hello"));
        EXPECT_TRUE(fetch(transportTo(site, authority))) << protocol;
    }
}

QT_WARNING_POP

// No current library speaks SSL 3, so this server only claims to in its hello. A client that agreed would
// wait for the next message, as it does after the same hello with an acceptable version.
TEST(UpdateFetchTls, RefusesSslThree) {
    QByteArray serverHello;
    QTcpServer old;
    ASSERT_TRUE(old.listen(QHostAddress::LocalHost));
    QObject::connect(&old, &QTcpServer::newConnection, &old, [&] {
        QTcpSocket* const connection = old.nextPendingConnection();
        QObject::connect(connection, &QTcpSocket::readyRead, connection, [&serverHello, connection] {
            if (!connection->readAll().isEmpty()) {
                connection->write(std::exchange(serverHello, {}));
            }
        });
    });
    const auto helloOf = [](char version) {
        QByteArray hello("\x16\x03\0\0\x31\x02\0\0\x2d\x03\0", 11);
        hello[2] = hello[10] = version;
        // No session, AES-128-GCM for an ECDSA certificate, no compression, and secure renegotiation.
        return hello + QByteArray(32, 'r') + QByteArray("\0\xc0\x2b\0\0\x05\xff\x01\0\x01\0", 11);
    };
    TestAuthority authority;
    TestSite site(authority.identityFor(host));
    site.leadTo(old.serverPort());
    UpdateTransport transport = transportTo(site, authority);
    QElapsedTimer elapsed;

    transport.idleLimit = shortLimit;
    serverHello = helloOf('\x03');
    elapsed.start();
    EXPECT_FALSE(fetch(transport));
    EXPECT_TRUE(serverHello.isEmpty());
    EXPECT_GE(elapsed.elapsed(), 1000) << "TLS 1.2: it waited for more";

    transport.idleLimit = 20s;
    serverHello = helloOf('\0');
    elapsed.start();
    EXPECT_FALSE(fetch(transport));
    EXPECT_TRUE(serverHello.isEmpty());
    EXPECT_LT(elapsed.elapsed(), 20'000) << "it turned away";
}

TEST_F(UpdateFetching, RefusesAServerThatSpeaksNoTls) {
    QTcpServer plain;
    ASSERT_TRUE(plain.listen(QHostAddress::LocalHost));
    QObject::connect(&plain, &QTcpServer::newConnection, &plain, [&plain] {
        QTcpSocket* const connection = plain.nextPendingConnection();
        connection->write(httpAnswer(200, "hello"));
        connection->disconnectFromHost();
    });
    transport.proxy = QNetworkProxy(QNetworkProxy::NoProxy);
    EXPECT_FALSE(fetch(transport, QUrl(u"https://127.0.0.1:%1/"_s.arg(plain.serverPort()))));
}

TEST_F(UpdateFetching, FollowsRedirectionsUpToFive) {
    const auto handler = [](int redirections) {
        return [redirections](QSslSocket& connection, const QByteArray& request) {
            const int step = request.mid(5, request.indexOf(' ', 5) - 5).toInt();
            connection.write(step == redirections ? httpAnswer(200, "there")
                                                  : httpRedirection('/' + QByteArray::number(step + 1)));
        };
    };
    const QUrl first(u"https://fenwhirl.example/0"_s);
    site.setHandler(handler(5));
    EXPECT_EQ(fetch(transport, first), "there");
    EXPECT_EQ(site.requests().size(), 6);
    site.setHandler(handler(6));
    EXPECT_FALSE(fetch(transport, first));
    EXPECT_EQ(site.requests().size(), 12);
}

TEST_F(UpdateFetching, EndsARedirectionThatLeadsToItself) {
    site.answerWith(httpRedirection("https://fenwhirl.example/maj/fenwhirl.json"));
    EXPECT_FALSE(fetch(transport));
    EXPECT_EQ(site.requests().size(), 6);
}

TEST_F(UpdateFetching, RefusesRedirectionsOutOfHttps) {
    for (const char* location :
         {"http://fenwhirl.example/", "HTTP://fenwhirl.example/", "file:///etc/hostname",
          "ftp://fenwhirl.example/", "data:,hello", "javascript:1", "qrc:/x", "http://127.0.0.1/"}) {
        site.answerWith(httpRedirection(location));
        const qsizetype before = site.requests().size();
        transport.idleLimit = 2s;
        EXPECT_FALSE(fetch(transport)) << location;
        EXPECT_EQ(site.requests().size(), before + 1) << location;
        EXPECT_FALSE(site.destinations().contains("PLAIN")) << location;
    }
}

TEST_F(UpdateFetching, FollowsARedirectionToAnotherVerifiedHost) {
    // One server for both hosts, with a certificate for both.
    TestSite both(authority.identityFor(u"*.fenwhirl.example"_s));
    both.setHandler([](QSslSocket& connection, const QByteArray& request) {
        connection.write(request.toLower().contains("\nhost: b.")
                             ? httpAnswer(200, "there")
                             : httpRedirection("https://b.fenwhirl.example/x"));
    });
    EXPECT_EQ(fetch(transportTo(both, authority), QUrl(u"https://a.fenwhirl.example/"_s)), "there");
    EXPECT_EQ(both.destinations(), (QList<QByteArray>{"a.fenwhirl.example:443", "b.fenwhirl.example:443"}));
}

TEST_F(UpdateFetching, VerifiesTheHostThatARedirectionLeadsTo) {
    site.setHandler([](QSslSocket& connection, const QByteArray&) {
        connection.write(httpRedirection("https://other.example/x"));
    });
    EXPECT_FALSE(fetch(transport));
    EXPECT_EQ(site.destinations(), (QList<QByteArray>{"fenwhirl.example:443", "other.example:443"}));
    EXPECT_EQ(site.requests().size(), 1);
}

TEST_F(UpdateFetching, TakesOneMebibyteAndNotOneByteMore) {
    site.answerWith(httpAnswer(200, QByteArray(1 << 20, 'x')));
    const auto body = fetch(transport);
    ASSERT_TRUE(body);
    EXPECT_EQ(body->size(), 1 << 20);
    site.answerWith(httpAnswer(200, QByteArray((1 << 20) + 1, 'x')));
    EXPECT_FALSE(fetch(transport));
}

TEST_F(UpdateFetching, StopsReadingAnEndlessBody) {
    // The first request of a process allocates memory that it never frees; leave that out of the measurement.
    site.answerWith(httpAnswer(200, "small"));
    ASSERT_TRUE(fetch(transport));
    const auto sent = std::make_shared<qint64>(0);
    constexpr qint64 tenGiB = qint64{10} << 30U;
    site.setHandler([&sent](QSslSocket& connection, const QByteArray&) {
        connection.write("HTTP/1.1 200 OK\r\nContent-Length: " + QByteArray::number(tenGiB) + "\r\n\r\n");
        flood(connection, tenGiB, sent);
    });
    (void)peakKiBSinceLastCall();
    const qint64 before = peakKiBSinceLastCall();
    EXPECT_FALSE(fetch(transport));
    EXPECT_LT(*sent, qint64{16} << 20U);
#if !defined(FENWHIRL_SANITIZED)
    EXPECT_LT(peakKiBSinceLastCall() - before, acceptableGrowthKiB);
#else
    (void)before;
#endif
}

TEST_F(UpdateFetching, ReadsACompressedAnswer) {
    const QByteArray body(5000, 'x');
    site.answerWith(httpAnswer(200, qCompress(body).mid(4), "Content-Encoding: deflate\r\n"));
    EXPECT_EQ(fetch(transport), body);
}

TEST_F(UpdateFetching, StopsUnpackingABomb) {
    const QByteArray packed = qCompress(QByteArray(256 << 20, ' '), 9).mid(4);
    ASSERT_LT(packed.size(), 1 << 20);
    // The first request of a process allocates memory that it never frees; leave that out of the measurement.
    site.answerWith(httpAnswer(200, "small"));
    ASSERT_TRUE(fetch(transport));
    site.answerWith(httpAnswer(200, packed, "Content-Encoding: deflate\r\n"));
    (void)peakKiBSinceLastCall();
    const qint64 before = peakKiBSinceLastCall();
    EXPECT_FALSE(fetch(transport));
#if !defined(FENWHIRL_SANITIZED)
    EXPECT_LT(peakKiBSinceLastCall() - before, acceptableGrowthKiB);
#else
    (void)before;
#endif
}

TEST_F(UpdateFetching, GivesUpASilentServer) {
    transport.idleLimit = shortLimit;
    QElapsedTimer elapsed;
    elapsed.start();
    EXPECT_FALSE(fetch(transport));
    EXPECT_EQ(site.requests().size(), 1);
    EXPECT_LT(elapsed.elapsed(), 20'000);
}

TEST_F(UpdateFetching, GivesUpAServerThatFallsSilent) {
    transport.idleLimit = shortLimit;
    transport.totalLimit = 1h; // so that only the silence ends it
    site.setHandler([](QSslSocket& connection, const QByteArray&) {
        connection.write("HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\nabc");
    });
    EXPECT_FALSE(fetch(transport));
    EXPECT_EQ(site.requests().size(), 1);
}

TEST_F(UpdateFetching, GivesUpATrickleThatTakesTooLongInAll) {
    transport.idleLimit = 60s;
    transport.totalLimit = shortLimit;
    QTimer drip;
    site.setHandler([&drip](QSslSocket& connection, const QByteArray&) {
        connection.write("HTTP/1.1 200 OK\r\nContent-Length: 100000\r\n\r\n");
        QObject::connect(&drip, &QTimer::timeout, &connection, [&connection] { connection.write("x"); });
        drip.start(10ms);
    });
    EXPECT_FALSE(fetch(transport));
    EXPECT_EQ(site.requests().size(), 1);
}

TEST_F(UpdateFetching, HasPatienceAsLongAsSomethingArrives) {
    transport.idleLimit = 2s;
    QTimer drip;
    int left = 40;
    site.setHandler([&](QSslSocket& connection, const QByteArray&) {
        connection.write("HTTP/1.1 200 OK\r\nContent-Length: 40\r\n\r\n");
        QObject::connect(&drip, &QTimer::timeout, &connection, [&] {
            if (left-- > 0) {
                connection.write("x");
            }
        });
        drip.start(5ms);
    });
    EXPECT_EQ(fetch(transport), QByteArray(40, 'x'));
}

TEST_F(UpdateFetching, GivesUpAProxyThatNeverConnects) {
    QTcpServer silent;
    ASSERT_TRUE(silent.listen(QHostAddress::LocalHost));
    transport.proxy = QNetworkProxy(QNetworkProxy::HttpProxy, u"127.0.0.1"_s, silent.serverPort());
    transport.idleLimit = 100ms;
    EXPECT_FALSE(fetch(transport));
}

TEST(UpdateTransport, HasTheLimitsOfTheProgram) {
    const UpdateTransport transport;
    EXPECT_EQ(transport.idleLimit, 10s);
    EXPECT_EQ(transport.totalLimit, 30s);
    EXPECT_EQ(transport.sizeLimit, 1048576);
    EXPECT_EQ(transport.redirectLimit, 5);
    EXPECT_FALSE(transport.authorities);
    EXPECT_FALSE(transport.proxy);
}

} // namespace Fenwhirl
