// Rows that are ready to be shown and are made anew at each reading.
//
// New rows are compared with the shown ones by what they stand for, a process or a sensor: views hear of the
// rows and roles that differ, and of exactly the rows that come, go or move. So a row that has the focus, or
// is in the user's hand, stays the same one however the others change. What shows the same as before costs
// them nothing.
//
// Threads: main thread only.

#pragma once

#include <QAbstractListModel>
#include <QByteArray>
#include <QList>
#include <QString>
#include <QVariantList>
#include <QtQml/qqmlregistration.h>

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
    // The names of the roles, from Qt::UserRole on.
    explicit RowList(QList<QByteArray> roleNames, QObject* parent = nullptr);

    // One row: what it stands for, and a value for each role, in the order of the names.
    struct Row {
        QString identity;
        QVariantList values;
    };

    // Of rows that stand for the same thing, each is the one at its place among them.
    void setRows(QList<Row> rows);

private:
    void removeMissing(const QList<Row>& rows);
    [[nodiscard]] bool shows(const QString& identity) const;
    void update(int row, const QVariantList& values);

    const QList<QByteArray> roleNames_;
    QList<Row> rows_;
};
