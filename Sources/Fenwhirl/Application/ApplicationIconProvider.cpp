#include "Fenwhirl/Application/ApplicationIconProvider.h"

#include "Fenwhirl/Platform/Desktop/ApplicationIcon.h"

#include <QPixmap>
#include <QUrl>

namespace Fenwhirl {

namespace {

constexpr int usualPixels = 56; // 28 points at two pixels per point

} // namespace

ApplicationIconProvider::ApplicationIconProvider() : QQuickImageProvider(QQuickImageProvider::Pixmap) {}

QString ApplicationIconProvider::name() {
    return QStringLiteral("application");
}

QString ApplicationIconProvider::sourceFor(const QString& applicationPath) {
    if (applicationIcon(applicationPath, usualPixels).isNull()) {
        return {};
    }
    return QStringLiteral("image://") + name() + u'/' +
           QString::fromLatin1(QUrl::toPercentEncoding(applicationPath));
}

QPixmap ApplicationIconProvider::requestPixmap(const QString& id, QSize* size, const QSize& requestedSize) {
    const int pixels = requestedSize.width() > 0 ? requestedSize.width() : usualPixels;
    const QString path = QUrl::fromPercentEncoding(id.toLatin1());
    QPixmap icon = QPixmap::fromImage(applicationIcon(path, pixels));
    if (size != nullptr) {
        *size = icon.size();
    }
    return icon;
}

} // namespace Fenwhirl
