#include "Fenwhirl/Views/PageList.h"

namespace Fenwhirl {

namespace {

QString asText(std::string_view ascii) {
    return QString::fromLatin1(ascii.data(), static_cast<qsizetype>(ascii.size()));
}

} // namespace

PageList::PageList(Monitor& monitor, QObject* parent) : QAbstractListModel(parent), monitor_(monitor) {
    connect(&monitor, &Monitor::selectedPageChanged, this, &PageList::selectedChanged);
}

void PageList::retranslate() {
    Q_EMIT dataChanged(index(0), index(rowCount() - 1), {titleRole});
}

void PageList::setSelectedIndex(int index) {
    if (index >= 0 && index < rowCount()) {
        monitor_.setSelectedPage(allPages.at(static_cast<std::size_t>(index)));
    }
}

QString PageList::selectedName() const {
    return asText(rawValue(monitor_.selectedPage()));
}

int PageList::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(allPages.size());
}

QVariant PageList::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const Page page = allPages.at(static_cast<std::size_t>(index.row()));
    switch (role) {
    case nameRole:
        return asText(rawValue(page));
    case titleRole:
        return title(page);
    case symbolRole:
        return asText(icon(page));
    default:
        return {};
    }
}

QHash<int, QByteArray> PageList::roleNames() const {
    return {{nameRole, "name"}, {titleRole, "title"}, {symbolRole, "symbol"}};
}

} // namespace Fenwhirl
