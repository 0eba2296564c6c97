// Rows that are ready to be shown and are made anew at each reading.
//
// New rows are compared with the shown ones place by place: views hear of the rows and roles that differ, and
// of rows that come or go at the end. What shows the same as before costs them nothing. (Where rows are
// objects that move with what they stand for, as a fan under the user's hand: FanList.)
//
// Threads: main thread only.

#pragma once

#include <QAbstractListModel>
#include <QByteArray>
#include <QList>
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

    // Each row has a value for each role, in the order of the names.
    void setRows(const QList<QVariantList>& rows);

private:
    void update(int row, const QVariantList& values);

    const QList<QByteArray> roleNames_;
    QList<QVariantList> rows_;
};
