#include "Fenwhirl/Updates/UpdateVersion.h"

#include <QList>

#include <algorithm>
#include <array>
#include <charconv>

namespace Fenwhirl {

namespace {

// Qt's own conversion would trim blanks and accept digits of other scripts.
qint64 numberOf(QStringView piece) {
    if (piece.startsWith(u'+')) {
        piece = piece.sliced(1);
        if (piece.startsWith(u'-')) {
            return 0;
        }
    }
    // Any number of leading zeros is allowed; a number that is still longer than this exceeds 64 bits.
    const bool negative = piece.startsWith(u'-');
    const QStringView digits = negative ? piece.sliced(1) : piece;
    const auto isDigit = [](QChar c) { return c >= u'0' && c <= u'9'; };
    if (digits.isEmpty() || !std::all_of(digits.begin(), digits.end(), isDigit)) {
        return 0;
    }
    const auto* const significant =
        std::find_if(digits.begin(), digits.end(), [](QChar c) { return c != u'0'; });
    std::array<char, 32> text = {};
    char* end = text.data();
    if (negative) {
        *end++ = '-';
    }
    for (const auto* digit = significant; digit != digits.end(); ++digit) {
        if (end == text.data() + text.size()) {
            return 0;
        }
        *end++ = static_cast<char>(digit->unicode());
    }
    qint64 value = 0;
    const auto result = std::from_chars(text.data(), end, value);
    return result.ec == std::errc() ? value : 0;
}

QList<qint64> piecesOf(QStringView version) {
    QList<qint64> pieces;
    for (const QStringView piece : version.tokenize(u'.', Qt::SkipEmptyParts)) {
        pieces.append(numberOf(piece));
    }
    return pieces;
}

} // namespace

bool isNewer(QStringView a, QStringView b) {
    const QList<qint64> left = piecesOf(a);
    const QList<qint64> right = piecesOf(b);
    for (qsizetype i = 0; i < std::max(left.size(), right.size()); ++i) {
        const qint64 l = left.value(i);
        const qint64 r = right.value(i);
        if (l != r) {
            return l > r;
        }
    }
    return false;
}

} // namespace Fenwhirl
