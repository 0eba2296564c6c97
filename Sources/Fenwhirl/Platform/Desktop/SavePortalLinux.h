// The desktop's own save dialog, which its portal brings up in the desktop's language and looks.
//
// `ask` runs an event loop until there is an answer, as a modal dialog does; meanwhile this program's windows
// take no input. Without a portal that can ask, `answered` is false and somebody else has to. A program that
// ends meanwhile counts as a declined dialog, which is taken away.
//
// Threads: main thread only. Tests make it with a bus of their own.

#pragma once

#include <QDBusConnection>
#include <QEventLoop>
#include <QObject>
#include <QString>
#include <QVariantMap>

class SavePortalLinux : public QObject {
    Q_OBJECT

public:
    struct Answer {
        bool answered = false;
        QString path; // empty when the user declined
    };

    explicit SavePortalLinux(QDBusConnection bus);

    // Whether such a dialog is open anywhere in the program.
    [[nodiscard]] static bool isAsking();

    [[nodiscard]] Answer ask(const QString& title, const QString& folder, const QString& name);

    bool eventFilter(QObject* watched, QEvent* event) override;

private Q_SLOTS:
    void responded(uint code, const QVariantMap& results);

private:
    void listenTo(const QString& request);
    void finish(bool answered, const QString& path = {});

    QDBusConnection bus_;
    QEventLoop loop_;
    QString request_;
    Answer answer_;
    bool open_ = false; // whether the portal may still be asking
};
