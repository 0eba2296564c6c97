#include "Fenwhirl/Updates/UpdateChecker.h"

#include "Fenwhirl/Localization/DisplayText.h"
#include "Fenwhirl/Platform/BundleInfo.h"
#include "Fenwhirl/Platform/Preferences/PreferencesStore.h"
#include "Fenwhirl/Updates/UpdateFetch.h"
#include "Fenwhirl/Updates/UpdateTexts.h"
#include "Fenwhirl/Updates/UpdateVersion.h"

#include <QEventLoop>
#include <QPointer>

#include <chrono>
#include <utility>

namespace Fenwhirl {

namespace {

constexpr double secondsPerDay = 86'400;

QString lastCheckKey() {
    return QStringLiteral("brenor.update.lastCheck");
}

QString notifiedVersionKey() {
    return QStringLiteral("brenor.update.notifiedVersion");
}

} // namespace

UpdateServices systemUpdateServices() {
    UpdateServices services;
    services.now = [] {
        const auto sinceEpoch = std::chrono::system_clock::now().time_since_epoch();
        return std::chrono::duration<double>(sinceEpoch).count();
    };
    services.bundleName = BundleInfo::name();
    services.bundleVersion = BundleInfo::shortVersion();
    services.domain = QStringLiteral(FENWHIRL_UPDATE_DOMAIN);
    return services;
}

UpdateChecker::UpdateChecker(UpdateServices services, QObject* parent)
    : QObject(parent)
    , services_(std::move(services)) {}

UpdateChecker::~UpdateChecker() = default;

void UpdateChecker::startIfNeeded() {
    const double now = services_.now();
    const double lastCheck = services_.preferences->number(lastCheckKey()).value_or(0);
    if (now - lastCheck < secondsPerDay || thread_ || !services_.bundleName) {
        return;
    }
    const std::optional<QUrl> address = updateDocumentAddress(services_.domain, *services_.bundleName);
    if (!address) {
        return;
    }
    // All network objects are created on that thread, because the first use of TLS reads all certificate
    // authorities of the system.
    thread_.emplace("fenwhirl.updates",
                    [this, address = *address, now, reply = inbox_.sender()](QEventLoop& loop) {
                        const std::optional<QByteArray> body = fetch(address, loop);
                        reply.post([this, news = body ? newsIn(*body, now) : std::nullopt] { end(news); });
                    });
}

QString UpdateChecker::currentVersion() const {
    return services_.bundleVersion.value_or(QStringLiteral("0"));
}

// The body of a valid answer; absent in all other cases, including when the loop is ended from outside.
std::optional<QByteArray> UpdateChecker::fetch(const QUrl& address, QEventLoop& loop) const {
    std::optional<QByteArray> result;
    UpdateFetch request(services_.transport, *services_.bundleName + u'/' + currentVersion());
    request.start(address, [&](std::optional<QByteArray> body) {
        result = std::move(body);
        EventLoopThread::end(loop);
    });
    loop.exec();
    return result;
}

// Notes that a valid answer arrived. Returns the document if it announces a newer version of which the user
// has not been told.
std::optional<UpdateDocument> UpdateChecker::newsIn(const QByteArray& body, double startedAt) const {
    std::optional<UpdateDocument> document = parseUpdateDocument(body, services_.domain);
    if (!document) {
        return std::nullopt;
    }
    services_.preferences->setNumber(lastCheckKey(), startedAt);
    const bool isNews = isNewer(document->version, currentVersion()) &&
                        services_.preferences->text(notifiedVersionKey()) != document->version;
    return isNews ? std::move(document) : std::nullopt;
}

void UpdateChecker::end(const std::optional<UpdateDocument>& news) {
    thread_.reset(); // its work is done
    // The alert runs an event loop of its own, in which the application may quit.
    const QPointer<UpdateChecker> alive(this);
    if (news) {
        offer(*news);
    }
    if (alive) {
        Q_EMIT finished();
    }
}

void UpdateChecker::offer(const UpdateDocument& document) {
    // Stored before the alert opens, so that it is shown at most once even if the
    // application quits while it is open.
    services_.preferences->setText(notifiedVersionKey(), document.version);
    // A copy, because the application may quit while the alert is open, and this object with it.
    const auto show = services_.show;
    show(updateAlert(services_.languageCode(), services_.bundleName.value_or(QString()), currentVersion(),
                     document));
}

UpdateAlert updateAlert(const QString& languageCode, const QString& name, const QString& current,
                        const UpdateDocument& document) {
    const UpdateTexts texts = updateTexts(languageCode);
    return {texts.title, updateBody(texts, displayText(document.version), name, current), texts.download,
            texts.later, document.page};
}

} // namespace Fenwhirl
