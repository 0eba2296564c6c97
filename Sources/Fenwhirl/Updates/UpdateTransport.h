// How the update document travels: whom to trust, and how long and how much to take.
//
// The program uses the values as they stand. Tests have a web server and an authority of their own and no
// patience.

#pragma once

#include <QList>
#include <QNetworkProxy>
#include <QSslCertificate>

#include <chrono>
#include <optional>

struct UpdateTransport {
    // Without anything arriving for that long the request is given up.
    std::chrono::milliseconds idleLimit = std::chrono::seconds(10);
    // And in any case after that: a server may send one byte now and then for ever.
    std::chrono::milliseconds totalLimit = std::chrono::seconds(30);
    // Bytes after decompression; the document has about a hundred.
    qint64 sizeLimit = qint64{1} << 20U;
    int redirectLimit = 5;
    // The authorities whose certificates count; absent: those that the system trusts.
    std::optional<QList<QSslCertificate>> authorities;
    // Absent: what the system says for the address.
    std::optional<QNetworkProxy> proxy;
};
