// The presets in their order, with the active one marked, for the presets page, the panel and the dashboard's
// menu.
//
// Threads: main thread only. Roles: "title", "detail", "active".

#pragma once

#include "Fenwhirl/Monitoring/Monitor.h"

#include <QAbstractListModel>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

#include <optional>

namespace Fenwhirl {

class PresetList : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the application")
    Q_PROPERTY(QStringList titles READ titles NOTIFY textsChanged)
    // The index of the active preset; -1 when the settings are the user's own.
    Q_PROPERTY(int activeIndex READ activeIndex NOTIFY activeChanged)
    Q_PROPERTY(QString activeTitle READ activeTitle NOTIFY activeChanged)

public:
    enum Role { titleRole = Qt::UserRole, detailRole, activeRole };

    explicit PresetList(Monitor& monitor, QObject* parent = nullptr);

    // Rebuilds the texts. Unlike a LiveView, the list always listens to its model, because presets change so
    // rarely.
    void retranslate();

    Q_INVOKABLE void apply(int index);

    [[nodiscard]] QStringList titles() const;
    [[nodiscard]] int activeIndex() const;
    [[nodiscard]] QString activeTitle() const;

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void textsChanged();
    void activeChanged();

private:
    void refreshActive();

    Monitor& monitor_;
};

} // namespace Fenwhirl
