// A list model of the fans of the last reading.
//
// Each fan keeps its FanRow object as long as it is present, so that a slider being dragged survives the next
// reading. A fan that appears or vanishes inserts or removes exactly its own row.
//
// Threads: main thread only. Role "fan" is the row's FanRow.

#pragma once

#include "Fenwhirl/Views/FanRow.h"

#include <QAbstractListModel>
#include <QList>

namespace Fenwhirl {

class FanList : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the machine view")
    Q_PROPERTY(int count READ count NOTIFY countChanged)

public:
    enum Role { fanRole = Qt::UserRole };

    FanList(Monitor& monitor, const SensorChoices& choices, QObject* parent);

    void setFans(const QList<FanState>& fans);
    void refreshSettings();
    void refreshSurroundings();
    void retranslate();

    [[nodiscard]] int count() const { return static_cast<int>(rows_.size()); }

    [[nodiscard]] FanRow* at(int row) const { return rows_.at(row); }

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void countChanged();

private:
    void removeMissing(const QList<FanState>& fans);

    Monitor& monitor_;
    const SensorChoices& choices_;
    QList<FanRow*> rows_;
};

} // namespace Fenwhirl
