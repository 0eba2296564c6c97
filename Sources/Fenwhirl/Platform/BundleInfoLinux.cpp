#include "Fenwhirl/Platform/BundleInfo.h"

namespace Fenwhirl {

std::optional<QString> BundleInfo::name() {
    return QStringLiteral(FENWHIRL_BUNDLE_NAME);
}

std::optional<QString> BundleInfo::shortVersion() {
    return QStringLiteral(FENWHIRL_VERSION);
}

QString BundleInfo::path() {
    return {};
}

} // namespace Fenwhirl
