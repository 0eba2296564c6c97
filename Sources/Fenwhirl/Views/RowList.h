// A list model of rows that are ready for display and are rebuilt at each reading.
//
// New rows are matched with the shown ones by the identity of what they represent, a process or a sensor.
// Views are notified only of the rows and roles that differ, and of exactly the rows that are inserted,
// removed or moved. A row that has the focus or is being dragged therefore stays the same however the others
// change, and rows that show the same as before cost the views nothing.
//
// Threads: main thread only.

#pragma once

#include <QAbstractListModel>
#include <QByteArray>
#include <QList>
#include <QString>
#include <QVariantList>
#include <QtQml/qqmlregistration.h>

namespace Fenwhirl {

class RowList : public QAbstractListModel {
    Q_OBJECT
    QML_ANONYMOUS
    Q_PROPERTY(int count READ count NOTIFY countChanged)

public:
    [[nodiscard]] int count() const { return static_cast<int>(rows_.size()); }

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void countChanged();

protected:
    // `roleNames`: the names of the roles, which are numbered from Qt::UserRole.
    explicit RowList(QList<QByteArray> roleNames, QObject* parent = nullptr);

    // One row: the identity of what it represents, and a value for each role, in the order of the names.
    struct Row {
        QString identity;
        QVariantList values;
    };

    // Replaces all rows. Rows of the same identity are matched by their order.
    void setRows(QList<Row> rows);

private:
    void removeMissing(const QList<Row>& rows);
    [[nodiscard]] bool shows(const QString& identity) const;
    void update(int row, const QVariantList& values);

    const QList<QByteArray> roleNames_;
    QList<Row> rows_;
};

} // namespace Fenwhirl
