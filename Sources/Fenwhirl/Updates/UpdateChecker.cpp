#include "Fenwhirl/Updates/UpdateChecker.h"

#include "Fenwhirl/Localization/DisplayText.h"
#include "Fenwhirl/Platform/BundleInfo.h"
#include "Fenwhirl/Platform/PreferencesStore.h"
#include "Fenwhirl/Updates/UpdateFetch.h"
#include "Fenwhirl/Updates/UpdateTexts.h"
#include "Fenwhirl/Updates/UpdateVersion.h"

#include <QEventLoop>
#include <QPointer>

#include <chrono>
#include <utility>

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
    // Everything of the network is made on its thread: the first use of TLS reads all the system's
    // authorities.
    thread_.emplace("fenwhirl.updates",
                    [this, address = *address, now, reply = inbox_.sender()](QEventLoop& loop) {
                        const std::optional<QByteArray> body = fetch(address, loop);
                        reply.post([this, news = body ? newsIn(*body, now) : std::nullopt] { end(news); });
                    });
}

QString UpdateChecker::currentVersion() const {
    return services_.bundleVersion.value_or(QStringLiteral("0"));
}

// The body of a good answer; nothing otherwise, also when the loop is ended from outside.
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

// Remembers that a valid answer came; what it says, when that is a newer version that the user has not been
// told of.
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
    // The alert runs an event loop of its own, in which the program may end.
    const QPointer<UpdateChecker> alive(this);
    if (news) {
        offer(*news);
    }
    if (alive) {
        Q_EMIT finished();
    }
}

void UpdateChecker::offer(const UpdateDocument& document) {
    // Before the alert, so that it is shown at most once even if the program ends while it is open.
    services_.preferences->setText(notifiedVersionKey(), document.version);
    // A copy, because the program may end while the alert is open, and this object with it.
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
