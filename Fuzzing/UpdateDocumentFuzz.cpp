// Fuzzes the handling of the update server's answer: any bytes as the document, as an address in it, and as
// versions.
//
// Input: the bytes. The part before the first NUL is also used as one version, the part after it as another.

#include "Fenwhirl/Updates/UpdateChecker.h"
#include "Fenwhirl/Updates/UpdateDocument.h"
#include "Fenwhirl/Updates/UpdateVersion.h"
#include "FuzzInput.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <algorithm>

namespace Fenwhirl {

namespace {

const QString domain = QStringLiteral("maker.tld");

void checkPage(const QUrl& page) {
    fuzzExpect(page.isValid() && page.scheme() == QStringLiteral("https"), "a page is an https address");
    const QString host = page.host();
    fuzzExpect(host == domain || host.endsWith(QStringLiteral(".maker.tld")), "of the maker");
    fuzzExpect(page.userInfo().isEmpty(), "without a user's name");
    // The browser receives the address as text, so check the text as well.
    const QString handedOver = page.toString(QUrl::FullyEncoded);
    const QString authority = handedOver.section(u'/', 2, 2).section(u'?', 0, 0).section(u'#', 0, 0);
    const QString named = authority.section(u':', 0, 0);
    fuzzExpect(handedOver.startsWith(QStringLiteral("https://")), "also as text");
    fuzzExpect(named == host, "which names the same host to whoever reads it naively");
    const std::optional<QUrl> again = vendorPage(handedOver, domain);
    fuzzExpect(again && again->toString(QUrl::FullyEncoded) == handedOver, "and is the same when read again");
}

void checkAlert(const UpdateDocument& document) {
    const UpdateAlert alert =
        updateAlert(QStringLiteral("fr"), QStringLiteral("Name"), QStringLiteral("1"), document);
    fuzzExpect(alert.body.size() < 1000, "the alert is short");
    fuzzExpect(std::none_of(alert.body.begin(), alert.body.end(),
                            [](QChar c) { return c.category() == QChar::Other_Control; }),
               "and has no control characters");
}

// The pieces of a version, computed independently of the product's code.
QList<qint64> piecesOf(const QString& version) {
    QList<qint64> pieces;
    for (const QString& piece : version.split(u'.', Qt::SkipEmptyParts)) {
        const QString digits = piece.mid(piece.startsWith(u'-') || piece.startsWith(u'+') ? 1 : 0);
        const bool plain = !digits.isEmpty() && std::all_of(digits.begin(), digits.end(),
                                                            [](QChar c) { return c >= u'0' && c <= u'9'; });
        pieces.append(plain ? piece.toLongLong() : 0);
    }
    while (!pieces.isEmpty() && pieces.last() == 0) {
        pieces.removeLast();
    }
    return pieces;
}

void checkVersions(const QString& a, const QString& b) {
    QList<qint64> left = piecesOf(a);
    QList<qint64> right = piecesOf(b);
    const qsizetype length = std::max(left.size(), right.size());
    left.resize(length);
    right.resize(length);
    const bool newer = std::lexicographical_compare(right.begin(), right.end(), left.begin(), left.end());
    fuzzExpect(isNewer(a, b) == newer, "versions compare piece by piece");
    fuzzExpect(!isNewer(a, a), "no version is newer than itself");
    fuzzExpect(!(isNewer(a, b) && isNewer(b, a)), "not each newer than the other");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    if (const std::optional<UpdateDocument> document = parseUpdateDocument(bytes, domain)) {
        checkPage(document->page);
        checkAlert(*document);
    }
    if (const std::optional<QUrl> page = vendorPage(QString::fromUtf8(bytes), domain)) {
        checkPage(*page);
    }
    const qsizetype end = bytes.indexOf('\0');
    checkVersions(QString::fromUtf8(bytes.left(end)), QString::fromUtf8(end < 0 ? "" : bytes.mid(end + 1)));
    return 0;
}

} // namespace Fenwhirl
