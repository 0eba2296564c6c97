// Turns all speeds, temperatures and percentages into the text that the user sees.
//
// Speeds and amounts have the digit grouping of the user's region (not of the interface language);
// temperatures and percentages are written plainly. A non-finite number is shown as 0, and a number beyond 64
// bits as the nearest that fits, so that no reading, however wrong, stops the program.
//
// Pure, except for the region that the system reports; any thread.

#pragma once

#include <QLocale>
#include <QString>
#include <QTime>

namespace Fenwhirl::NumberFormat {

// Whole numbers: `truncated` toward zero; `rounded` to the nearest, with halves away from zero.
[[nodiscard]] qint64 truncated(double value);
[[nodiscard]] qint64 rounded(double value);

// "2 400": revolutions per minute, truncated, without the unit.
[[nodiscard]] QString rpmText(double rpm, const QLocale& region = QLocale::system());

// "63": rounded, for texts that contain the unit themselves ("Seuil d'alerte : %@ °C").
[[nodiscard]] QString degreesText(double celsius);

// "63 °C": rounded, with its unit.
[[nodiscard]] QString temperatureText(double celsius);

// "55 – 72 °C": a range, with the dash and the spaces that the interface language puts between its ends.
[[nodiscard]] QString rangeText(const QString& lowest, const QString& highest);

// "37 %": rounded; `percent` is between 0 and 100.
[[nodiscard]] QString percentText(double percent);

// "3 412 Mo": rounded, in mebibytes, with the unit in the interface language.
[[nodiscard]] QString memoryText(double memoryMB, const QLocale& region = QLocale::system());

// "14:32": hours and minutes in the region's short format, without seconds even if that format has them.
[[nodiscard]] QString clockText(QTime time, const QLocale& region = QLocale::system());

} // namespace Fenwhirl::NumberFormat
