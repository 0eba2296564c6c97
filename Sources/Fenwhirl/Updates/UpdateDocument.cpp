#include "Fenwhirl/Updates/UpdateDocument.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonValue>

namespace Fenwhirl {

std::optional<QUrl> updateDocumentAddress(const QString& domain, const QString& bundleName) {
    const QUrl address(QStringLiteral("https://") + domain + QStringLiteral("/maj/") + bundleName.toLower() +
                           QStringLiteral(".json"),
                       QUrl::StrictMode);
    return address.isValid() && !address.host().isEmpty() ? std::optional(address) : std::nullopt;
}

std::optional<QUrl> vendorPage(const QString& text, const QString& domain) {
    QUrl page(text, QUrl::StrictMode);
    if (!page.isValid() || page.scheme() != QStringLiteral("https")) {
        return std::nullopt;
    }
    // An "@" marks user information before the host, which can make the address look like another one.
    if (page.authority(QUrl::FullyEncoded).contains(u'@')) {
        return std::nullopt;
    }
    const QString host = page.host(QUrl::FullyEncoded).toLower();
    const QString makersHost = domain.toLower();
    if (makersHost.isEmpty() || (host != makersHost && !host.endsWith(u'.' + makersHost))) {
        return std::nullopt;
    }
    return page;
}

std::optional<UpdateDocument> parseUpdateDocument(const QByteArray& json, const QString& domain) {
    // If the JSON is not an object, its members are undefined and therefore not strings.
    const QJsonObject object = QJsonDocument::fromJson(json).object();
    const QJsonValue version = object.value(QStringLiteral("version"));
    const QJsonValue page = object.value(QStringLiteral("page"));
    if (!version.isString() || !page.isString()) {
        return std::nullopt;
    }
    const std::optional<QUrl> address = vendorPage(page.toString(), domain);
    if (!address) {
        return std::nullopt;
    }
    return UpdateDocument{version.toString(), *address};
}

} // namespace Fenwhirl
