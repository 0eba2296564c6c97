// The texts of a window as they are drawn: where each one is, and whether it is shown in full.
//
// The accessibility tree tells what a window says; this tells what a user sees of it. It reads the scene on
// the main thread. The window must have been drawn since its last change.

#pragma once

#include <QByteArray>
#include <QList>
#include <QQuickWindow>
#include <QRectF>
#include <QString>
#include <QStringList>

namespace Fenwhirl {

struct ShownText {
    QString text;
    QRectF place;     // of the letters, in the window
    QRectF room;      // the area available to them; whatever lies outside is cut or overlaps something else
    bool cut = false; // ends in an ellipsis
    bool explained = false; // the tooltip shows it in full while it is cut
    bool wraps = false;
};

// Every text that is visible, or would be if the page were scrolled to it. `within` limits the search to an
// item of this type, which is needed when that item covers the rest: "Onboarding", or "QQuickOverlay" for
// dialogs and menus.
[[nodiscard]] QList<ShownText> shownTexts(QQuickWindow& window, const QByteArray& within = {});

// Describes each text that is cut, extends beyond its room, or overlaps another text. `mayBeCut` lists texts
// that may be cut. `textScale` is the theme's.
[[nodiscard]] QStringList layoutFaults(const QList<ShownText>& texts, const QStringList& mayBeCut = {},
                                       double textScale = 1);

} // namespace Fenwhirl
