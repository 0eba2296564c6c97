// What the maker's web site says about the newest version.
//
// The document is a JSON object with at least "version", text, and "page", the address of the download page,
// text too. It crosses the network: nothing in it is trusted.
//
// Pure functions: any thread.

#pragma once

#include <QByteArray>
#include <QString>
#include <QUrl>

#include <optional>

struct UpdateDocument {
    QString version; // as it came: of any length, with anything in it
    QUrl page;       // an address of the maker

    bool operator==(const UpdateDocument&) const = default;
};

// Where the document of a program lies: https://DOMAIN/maj/NAME.json, the name in lower case. Nothing when
// that makes no address.
[[nodiscard]] std::optional<QUrl> updateDocumentAddress(const QString& domain, const QString& bundleName);

// The address, strictly read, when it is an https one of the domain itself or of a subdomain, without a
// user's name. What is opened later is this address and not the text it came from.
[[nodiscard]] std::optional<QUrl> makersPage(const QString& text, const QString& domain);

// The document in an answer, or nothing when it is none or its page is not the maker's.
[[nodiscard]] std::optional<UpdateDocument> parseUpdateDocument(const QByteArray& json,
                                                                const QString& domain);
