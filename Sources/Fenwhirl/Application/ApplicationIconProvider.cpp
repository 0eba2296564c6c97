#include "Fenwhirl/Application/ApplicationIconProvider.h"

#include "Fenwhirl/Platform/Desktop/ApplicationIcon.h"

#include <QPixmap>
#include <QUrl>

namespace {

constexpr int usualPixels = 56; // 28 points at two pixels a point

} // namespace

ApplicationIconProvider::ApplicationIconProvider() : QQuickImageProvider(QQuickImageProvider::Pixmap) {}

QPixmap ApplicationIconProvider::requestPixmap(const QString& id, QSize* size, const QSize& requestedSize) {
    const int pixels = requestedSize.width() > 0 ? requestedSize.width() : usualPixels;
    const QString path = QUrl::fromPercentEncoding(id.toLatin1());
    const QPixmap icon = QPixmap::fromImage(applicationIcon(path, pixels));
    if (size != nullptr)
        *size = icon.size();
    return icon;
}
