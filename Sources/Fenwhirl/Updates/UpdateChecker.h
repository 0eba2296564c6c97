// The daily check for a newer version, and the single alert that announces one.
//
// At most once a day, at launch, the checker asks the vendor's web site for the newest version. When it is
// newer than this one and the user has not yet been told of it, an alert offers the download page. Any
// failure ends the check silently; a check without a valid answer is repeated at the next launch.
//
// Threads: the object lives on the main thread; startIfNeeded is called there, and so are the functions for
// the language and the alert. The network request and the parsing of its answer happen on a thread of their
// own, which ends with the check. The main thread never waits for that thread, except to stop it when the
// object is destroyed.
//
// Ownership: created by the application, which supplies the alert as a function. The preferences belong to
// the caller and must outlive the checker.

#pragma once

#include "Fenwhirl/Platform/Toolkit/EventLoopThread.h"
#include "Fenwhirl/Platform/Toolkit/MainThreadInbox.h"
#include "Fenwhirl/Updates/UpdateDocument.h"
#include "Fenwhirl/Updates/UpdateTransport.h"

#include <QObject>
#include <QString>
#include <QUrl>

#include <functional>
#include <optional>

namespace Fenwhirl {

class PreferencesStore;

// What the alert says and offers. The texts are complete, plain and of bounded length.
struct UpdateAlert {
    QString title;
    QString body;
    QString download; // the first and default button: opens `page`
    QString later;    // the second button: only closes the alert
    QUrl page;

    bool operator==(const UpdateAlert&) const = default;
};

struct UpdateServices {
    // Seconds since 1970 by the computer's clock. Main thread.
    std::function<double()> now;
    // This program's name and version; absent when its bundle does not state them.
    std::optional<QString> bundleName;
    std::optional<QString> bundleVersion;
    // The vendor's domain, which hosts the document and the download pages.
    QString domain;
    // Safe on any thread; outlives the checker.
    PreferencesStore* preferences = nullptr;
    // The code of the interface's language (UpdateTexts.h). Main thread.
    std::function<QString()> languageCode = [] { return QStringLiteral("fr"); };
    // Brings the program to the front and shows the modal alert. Main thread.
    std::function<void(const UpdateAlert&)> show;
    UpdateTransport transport;
};

// The real clock, bundle, domain and transport; the application has to fill in the
// preferences, language and alert.
[[nodiscard]] UpdateServices systemUpdateServices();

class UpdateChecker : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(UpdateChecker)

public:
    explicit UpdateChecker(UpdateServices services, QObject* parent = nullptr);
    ~UpdateChecker() override;

    // Runs the whole check in the background, unless one with a valid answer was made less than a day ago.
    // Returns immediately. To be called once after launch; does nothing while a check runs.
    void startIfNeeded();

    // True from the beginning of a check until its network work has ended.
    [[nodiscard]] bool isChecking() const { return thread_.has_value(); }

Q_SIGNALS:
    // A check has ended, and its alert, if any, is closed. Not emitted when no check was started.
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

} // namespace Fenwhirl
