#include "Fenwhirl/Localization/NumberFormat.h"

#include "Fenwhirl/Localization/Localizer.h"

#include <cmath>
#include <limits>

namespace Fenwhirl {

namespace {

qint64 saturated(double whole) {
    // 2^63 is the first double above the range; its negative is the range's lower bound.
    static constexpr double limit = 9223372036854775808.0;
    if (!std::isfinite(whole)) {
        return 0;
    }
    if (whole >= limit) {
        return std::numeric_limits<qint64>::max();
    }
    if (whole < -limit) {
        return std::numeric_limits<qint64>::min();
    }
    return static_cast<qint64>(whole);
}

// A time format without the seconds and the separator before them; quoted text is kept.
QString withoutSeconds(const QString& form) {
    QString result;
    bool quoted = false;
    for (const QChar character : form) {
        quoted = quoted != (character == u'\'');
        if (quoted || character != u's') {
            result += character;
        } else if (!result.isEmpty() && (result.back() == u':' || result.back() == u'.')) {
            result.chop(1);
        }
    }
    return result;
}

} // namespace

qint64 NumberFormat::truncated(double value) {
    return saturated(std::trunc(value));
}

qint64 NumberFormat::rounded(double value) {
    return saturated(std::round(value));
}

QString NumberFormat::rpmText(double rpm, const QLocale& region) {
    return region.toString(truncated(rpm));
}

QString NumberFormat::degreesText(double celsius) {
    return QString::number(rounded(celsius));
}

QString NumberFormat::temperatureText(double celsius) {
    return degreesText(celsius) + QStringLiteral(" °C");
}

QString NumberFormat::rangeText(const QString& lowest, const QString& highest) {
    // The ranges of the fans are the only ones among the texts; theirs tells how the language writes a range.
    const QString first(QChar(u'\x1'));
    const QString second(QChar(u'\x2'));
    const QString range = localized(u"%@ – %@ tr/min", {first, second});
    const qsizetype begin = range.indexOf(first) + 1;
    return lowest + range.sliced(begin, range.indexOf(second) - begin) + highest;
}

QString NumberFormat::percentText(double percent) {
    return QString::number(rounded(percent)) + QStringLiteral(" %");
}

QString NumberFormat::memoryText(double memoryMB, const QLocale& region) {
    return region.toString(rounded(memoryMB)) + u' ' + localized(u"Mo");
}

QString NumberFormat::clockText(QTime time, const QLocale& region) {
    return region.toString(time, withoutSeconds(region.timeFormat(QLocale::ShortFormat)));
}

} // namespace Fenwhirl
