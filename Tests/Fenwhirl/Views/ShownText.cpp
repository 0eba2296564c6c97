#include "ShownText.h"

#include "Fenwhirl/Localization/DrawnText.h"

#include <QQuickItem>

#include <algorithm>

namespace Fenwhirl {

namespace {

// A font's letters may extend slightly beyond their advance, and its line height beyond the design's.
constexpr double designedOverhang = 2;

bool isText(const QQuickItem& item) {
    return item.inherits("QQuickText");
}

// The area of the letters within the item.
QRectF letters(const QQuickItem& text) {
    const QSizeF size(text.property("contentWidth").toReal(), text.property("contentHeight").toReal());
    const double left = text.property("leftPadding").toReal();
    const double right = text.property("rightPadding").toReal();
    const double top = text.property("topPadding").toReal();
    const double bottom = text.property("bottomPadding").toReal();
    const auto free = QSizeF(text.width() - left - right, text.height() - top - bottom) - size;
    double x = left;
    switch (text.property("effectiveHorizontalAlignment").toInt()) {
    case Qt::AlignRight:
        x += free.width();
        break;
    case Qt::AlignHCenter:
        x += free.width() / 2;
        break;
    default:
        break;
    }
    double y = top;
    switch (text.property("verticalAlignment").toInt()) {
    case Qt::AlignBottom:
        y += free.height();
        break;
    case Qt::AlignVCenter:
        y += free.height() / 2;
        break;
    default:
        break;
    }
    return {QPointF(x, y), size};
}

// The intersection of all items that contain the text. A scrolling page and the items around the page do not
// limit it vertically.
QRectF roomOf(const QQuickItem& text) {
    QRectF room(-1e6, -1e6, 2e6, 2e6);
    bool scrolls = false;
    double overhang = 0; // how far an item may extend into the spacing below it
    for (const QQuickItem* around = text.parentItem(); around != nullptr; around = around->parentItem()) {
        if (around->inherits("QQuickFlickable")) {
            scrolls = true;
        }
        // An item without a size of its own only groups others and bounds nothing.
        if (around->width() <= 0 || around->height() <= 0) {
            continue;
        }
        QRectF bounds = around->mapRectToScene(QRectF(QPointF(), around->size()));
        overhang = std::max(overhang, around->property("overhang").toDouble());
        bounds.setBottom(bounds.bottom() + overhang);
        if (scrolls) {
            bounds.setTop(room.top());
            bounds.setBottom(room.bottom());
        }
        room &= bounds;
    }
    return room;
}

void collect(const QQuickItem& item, QList<ShownText>& into) {
    if (!item.isVisible() || item.opacity() == 0) {
        return;
    }
    if (isText(item) && !item.property("text").toString().isEmpty()) {
        into.append({.text = item.property("text").toString(),
                     .place = item.mapRectToScene(letters(item)),
                     .room = roomOf(item),
                     .cut = item.property("truncated").toBool(),
                     .explained = QByteArrayView(item.metaObject()->className()).startsWith("ElidedLabel"),
                     .wraps = item.property("wrapMode").toInt() != 0});
    }
    for (const QQuickItem* child : item.childItems()) {
        collect(*child, into);
    }
}

// The item itself, or else the first visible item in it, whose type name begins with `type`.
const QQuickItem* partOf(const QQuickItem& item, const QByteArray& type) {
    if (item.isVisible() && QByteArrayView(item.metaObject()->className()).startsWith(type)) {
        return &item;
    }
    for (const QQuickItem* child : item.childItems()) {
        if (const QQuickItem* const part = partOf(*child, type)) {
            return part;
        }
    }
    return nullptr;
}

QString words(const QRectF& place) {
    return QStringLiteral("(%1, %2 to %3, %4)")
        .arg(place.left(), 0, 'f', 1)
        .arg(place.top(), 0, 'f', 1)
        .arg(place.right(), 0, 'f', 1)
        .arg(place.bottom(), 0, 'f', 1);
}

} // namespace

QList<ShownText> shownTexts(QQuickWindow& window, const QByteArray& within) {
    QList<ShownText> texts;
    if (const QQuickItem* const part = partOf(*window.contentItem(), within)) {
        collect(*part, texts);
    }
    return texts;
}

QStringList layoutFaults(const QList<ShownText>& texts, const QStringList& mayBeCut, double textScale) {
    const double overhang = designedOverhang * textScale;
    QStringList faults;
    for (qsizetype i = 0; i < texts.size(); ++i) {
        const ShownText& shown = texts[i];
        if (shown.cut && !mayBeCut.contains(shown.text)) {
            faults.append(QStringLiteral("cut: \"%1\"").arg(shown.text));
        }
        if (shown.wraps && withNoBreakSpaces(shown.text) != shown.text) {
            faults.append(QStringLiteral("may begin a line with a unit: \"%1\"").arg(shown.text));
        }
        if (withApostrophes(shown.text) != shown.text) {
            faults.append(QStringLiteral("has a typewriter's apostrophe: \"%1\"").arg(shown.text));
        }
        const QRectF room = shown.room.adjusted(-overhang, -overhang, overhang, overhang);
        if (!shown.cut && !room.contains(shown.place)) {
            faults.append(QStringLiteral("stands over its edge: \"%1\" %2 in %3")
                              .arg(shown.text, words(shown.place), words(shown.room)));
        }
        for (qsizetype j = i + 1; j < texts.size(); ++j) {
            const QRectF common = shown.place & texts[j].place;
            if (common.width() > overhang && common.height() > overhang) {
                faults.append(QStringLiteral("one over the other: \"%1\" and \"%2\" %3")
                                  .arg(shown.text, texts[j].text, words(common)));
            }
        }
    }
    return faults;
}

} // namespace Fenwhirl
