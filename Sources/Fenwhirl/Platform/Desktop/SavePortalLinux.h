// The desktop's own save dialog, which its portal shows in the desktop's language and style.
//
// `ask` runs an event loop until there is an answer, as a modal dialog does; meanwhile this program's windows
// ignore input. Without a portal that can show the dialog, `answered` is false and the caller must ask in
// another way. If the program ends meanwhile, the dialog is closed and counts as cancelled.
//
// Threads: main thread only. Tests pass a bus of their own.

#pragma once

#include <QDBusConnection>
#include <QEventLoop>
#include <QObject>
#include <QString>
#include <QVariantMap>

namespace Fenwhirl {

class SavePortalLinux : public QObject {
    Q_OBJECT

public:
    struct Answer {
        bool answered = false;
        QString path; // empty when the user cancelled
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
    bool open_ = false; // whether the portal may still be showing the dialog
};

} // namespace Fenwhirl
