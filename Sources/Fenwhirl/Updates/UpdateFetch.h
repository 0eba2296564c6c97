// One request for the update document.
//
// Ephemeral: no cookies, no cache, no credentials, and nothing kept afterwards. Only https is accepted.
// Certificates are verified, including a revocation status that the server attaches, and no certificate error
// is ever ignored. Redirections may lead to another host, but not out of https. The answer is limited in
// time, size and redirections (UpdateTransport.h).
//
// Threads: belongs to the thread that creates it, which needs an event loop. The thread is never blocked.

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

namespace Fenwhirl {

class UpdateFetch : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(UpdateFetch)

public:
    // Called exactly once, unless the object is destroyed before: with the body of an answer of status 200,
    // or without one in all other cases. While it is called, the object may be destroyed by deleteLater only.
    using Completion = std::function<void(std::optional<QByteArray> body)>;

    UpdateFetch(UpdateTransport transport, QString userAgent, QObject* parent = nullptr);
    ~UpdateFetch() override;

    // Starts the request; to be called once.
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
    QNetworkReply* reply_ = nullptr; // the current one; owned by network_
    QByteArray body_;
    int redirections_ = 0;
    Completion completion_;
};

} // namespace Fenwhirl
