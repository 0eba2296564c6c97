// The pages of the sidebar, in order, and which one is selected.
//
// The monitor keeps the selection, so that a window that is closed and opened again shows the same page.
//
// Threads: main thread only. Roles: "name" (the page's raw value), "title", "symbol".

#pragma once

#include "Fenwhirl/Monitoring/Monitor.h"
#include "Fenwhirl/Views/PageLabels.h"

#include <QAbstractListModel>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace Fenwhirl {

class PageList : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the application")
    Q_PROPERTY(int selectedIndex READ selectedIndex WRITE setSelectedIndex NOTIFY selectedChanged)
    Q_PROPERTY(QString selectedName READ selectedName NOTIFY selectedChanged)
    // In the current interface language.
    Q_PROPERTY(QString selectedTitle READ selectedTitle NOTIFY selectedChanged)

public:
    enum Role { nameRole = Qt::UserRole, titleRole, symbolRole };

    explicit PageList(Monitor& monitor, QObject* parent = nullptr);

    void retranslate();

    [[nodiscard]] int selectedIndex() const { return static_cast<int>(monitor_.selectedPage()); }

    void setSelectedIndex(int index);
    [[nodiscard]] QString selectedName() const;

    [[nodiscard]] QString selectedTitle() const { return title(monitor_.selectedPage()); }

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void selectedChanged();

private:
    Monitor& monitor_;
};

} // namespace Fenwhirl
