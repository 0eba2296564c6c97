// The texts of a window as they are drawn: where each stands, and whether it stands there whole.
//
// Where the accessibility tree tells what a window says, this tells what the eye gets of it. Reads the scene
// on the main thread; the window must have been drawn since its last change.

#pragma once

#include <QByteArray>
#include <QList>
#include <QQuickWindow>
#include <QRectF>
#include <QString>
#include <QStringList>

struct ShownText {
    QString text;
    QRectF place;     // of the letters, in the window
    QRectF room;      // what the surroundings leave for them: whatever stands outside of it is cut or lies on
                      // something else
    bool cut = false; // ends in an ellipsis
    bool explained = false; // its tooltip shows it whole while it is cut
    bool wraps = false;
};

// Every text that is visible, or would be if the page were scrolled to it. `within` names the type of an item
// to which that is limited, as what covers the rest must be: "Onboarding", or "QQuickOverlay" for dialogs and
// menus.
[[nodiscard]] QList<ShownText> shownTexts(QQuickWindow& window, const QByteArray& within = {});

// What is wrong with them, in words, for each text that is cut, stands outside its room or lies over another
// text. A cut text that its owner lets be cut is named in `mayBeCut`. `textScale` is the theme's.
[[nodiscard]] QStringList layoutFaults(const QList<ShownText>& texts, const QStringList& mayBeCut = {},
                                       double textScale = 1);
