// The document on the vendor's web site that describes the newest version.
//
// It is a JSON object with at least two texts: "version", and "page", the address of the download page. It
// comes over the network, so nothing in it is trusted.
//
// Pure functions: any thread.

#pragma once

#include <QByteArray>
#include <QString>
#include <QUrl>

#include <optional>

namespace Fenwhirl {

struct UpdateDocument {
    QString version; // as received: of any length and any content
    QUrl page;       // an address of the vendor

    bool operator==(const UpdateDocument&) const = default;
};

// The address of a program's document: https://DOMAIN/maj/NAME.json, with the name in lower case. Absent when
// that is not a valid address.
[[nodiscard]] std::optional<QUrl> updateDocumentAddress(const QString& domain, const QString& bundleName);

// The address, parsed strictly, if it is an https address of the domain or of a subdomain, without a user
// name. This parsed address is what is opened later, not the text that it came from.
[[nodiscard]] std::optional<QUrl> vendorPage(const QString& text, const QString& domain);

// The document in an answer; absent when the answer is not valid, or its page is not the vendor's.
[[nodiscard]] std::optional<UpdateDocument> parseUpdateDocument(const QByteArray& json,
                                                                const QString& domain);

} // namespace Fenwhirl
