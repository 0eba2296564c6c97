// One request for the update document.
//
// Ephemeral: no cookies, no cache, no credentials, nothing kept afterwards. Only https counts: certificates
// are verified, with what the server passes on about their withdrawal, and no error of them is ever ignored;
// redirections may lead to another host but not out of https. The answer is bounded in time, size and
// redirections (UpdateTransport.h).
//
// Threads: belongs to the thread that makes it, which needs an event loop and is never blocked.

#pragma once

#include "Fenwhirl/Updates/UpdateTransport.h"

#include <QByteArray>
#include <QNetworkAccessManager>
#include <QObject>
#include <QTimer>
#include <QUrl>

#include <functional>
#include <optional>

class QNetworkReply;

class UpdateFetch : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(UpdateFetch)

public:
    // Called exactly once unless the object is destroyed before: the body of an answer with status 200, or
    // nothing for everything else. The object may be destroyed in it by deleteLater only.
    using Completion = std::function<void(std::optional<QByteArray> body)>;

    UpdateFetch(UpdateTransport transport, QString userAgent, QObject* parent = nullptr);
    ~UpdateFetch() override;

    // Begins; once.
    void start(const QUrl& address, Completion completion);

private:
    void request(const QUrl& address);
    void readMore();
    void takeWhatIsThere();
    void finish();
    void follow(const QUrl& address);
    void giveUp();
    void complete(std::optional<QByteArray> body);

    UpdateTransport transport_;
    QString userAgent_;
    QNetworkAccessManager network_;
    QTimer idle_;
    QTimer total_;
    QNetworkReply* reply_ = nullptr; // the one under way; owned by network_
    QByteArray body_;
    int redirections_ = 0;
    Completion completion_;
};
