// The daily look for a newer version, and the one alert that a newer version is worth.
//
// At most once a day, at launch, the maker's web site is asked for the newest version. When it is newer than
// this one and the user has not been told of that very version, an alert offers the download page. Whatever
// goes wrong ends the check silently; a check without a valid answer is made again at the next launch.
//
// Threads: the object lives on the main thread, where startIfNeeded is called, the language asked for and the
// alert shown. The network and what its answer means are the business of a thread of its own that ends with
// the check; the main thread never waits for it, but at the end for its orderly stop.
//
// Ownership: made by the application, which supplies the alert as a function. The preferences belong to the
// caller and outlive it.

#pragma once

#include "Fenwhirl/Platform/EventLoopThread.h"
#include "Fenwhirl/Platform/MainThreadInbox.h"
#include "Fenwhirl/Updates/UpdateDocument.h"
#include "Fenwhirl/Updates/UpdateTransport.h"

#include <QObject>
#include <QString>
#include <QUrl>

#include <functional>
#include <optional>

class PreferencesStore;

// What the alert says and offers. Texts are complete, plain and of bounded length.
struct UpdateAlert {
    QString title;
    QString body;
    QString download; // the first and default button: opens `page`
    QString later;    // the second button: closes the alert, nothing more
    QUrl page;

    bool operator==(const UpdateAlert&) const = default;
};

struct UpdateServices {
    // Seconds since 1970 by the computer's clock. Main thread.
    std::function<double()> now;
    // This program's name and version; absent when its bundle has none.
    std::optional<QString> bundleName;
    std::optional<QString> bundleVersion;
    // The maker's: host of the document and of the download pages.
    QString domain;
    // Safe on any thread; outlives the checker.
    PreferencesStore* preferences = nullptr;
    // The code of the interface's language (UpdateTexts.h). Main thread.
    std::function<QString()> languageCode = [] { return QStringLiteral("fr"); };
    // Brings the program to the front and shows the alert, modal. Main thread.
    std::function<void(const UpdateAlert&)> show;
    UpdateTransport transport;
};

// The real clock, bundle, domain and transport; what is left for the application: preferences, language and
// alert.
[[nodiscard]] UpdateServices systemUpdateServices();

class UpdateChecker : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(UpdateChecker)

public:
    explicit UpdateChecker(UpdateServices services, QObject* parent = nullptr);
    ~UpdateChecker() override;

    // Runs the whole check in the background, unless one with a valid answer was less than a day ago. Returns
    // at once. For once after launch; nothing while a check runs.
    void startIfNeeded();

    // From the beginning of a check to the end of its network work.
    [[nodiscard]] bool isChecking() const { return thread_.has_value(); }

Q_SIGNALS:
    // A check has ended, after its alert if there was one. Not emitted when none was begun.
    void finished();

private:
    // On the check's thread.
    [[nodiscard]] std::optional<QByteArray> fetch(const QUrl& address, QEventLoop& loop) const;
    [[nodiscard]] std::optional<UpdateDocument> newsIn(const QByteArray& body, double startedAt) const;

    void end(const std::optional<UpdateDocument>& news);
    void offer(const UpdateDocument& document);
    [[nodiscard]] QString currentVersion() const;

    const UpdateServices services_;
    MainThreadInbox inbox_;
    std::optional<EventLoopThread> thread_; // last: its work uses the members above
};

// The alert for a newer version.
[[nodiscard]] UpdateAlert updateAlert(const QString& languageCode, const QString& name,
                                      const QString& current, const UpdateDocument& document);
