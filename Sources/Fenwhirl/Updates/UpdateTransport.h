// The limits of a request for the update document: trusted authorities, time, size, redirections.
//
// The program uses the defaults. Tests use a web server and an authority of their own,
// and shorter time limits.

#pragma once

#include <QList>
#include <QNetworkProxy>
#include <QSslCertificate>

#include <chrono>
#include <optional>

namespace Fenwhirl {

struct UpdateTransport {
    // The request is given up when nothing arrives for this long,
    std::chrono::milliseconds idleLimit = std::chrono::seconds(10);
    // and in any case after this long, because a server might go on sending a byte now and then for ever.
    std::chrono::milliseconds totalLimit = std::chrono::seconds(30);
    // In bytes after decompression; the document has about a hundred.
    qint64 sizeLimit = qint64{1} << 20U;
    int redirectLimit = 5;
    // The certificate authorities to trust; absent: those that the system trusts.
    std::optional<QList<QSslCertificate>> authorities;
    // Absent: the proxy that the system specifies for the address.
    std::optional<QNetworkProxy> proxy;
};

} // namespace Fenwhirl
