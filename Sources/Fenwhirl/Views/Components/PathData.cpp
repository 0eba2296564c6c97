#include "Fenwhirl/Views/Components/PathData.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace Fenwhirl {

namespace {

constexpr double degreesPerRadian = 180.0 / std::numbers::pi;

// Walks over the text. Every read skips separators first, and returns nothing if the text does not continue
// as requested.
class Reader {
public:
    explicit Reader(QStringView text) : text_(text) {}

    bool atEnd() {
        skipSeparators();
        return position_ >= text_.size();
    }

    bool atLetter() {
        skipSeparators();
        return position_ < text_.size() && text_[position_].isLetter();
    }

    QChar letter() { return text_[position_++]; }

    std::optional<double> number() {
        skipSeparators();
        const qsizetype begin = position_;
        if (peek(u'-') || peek(u'+')) {
            ++position_;
        }
        skipDigits();
        if (peek(u'.')) {
            ++position_;
            skipDigits();
        }
        bool valid = false;
        const double value = text_.sliced(begin, position_ - begin).toDouble(&valid);
        return valid ? std::optional(value) : std::nullopt;
    }

    // The flags of an arc may be written without a separator after them.
    std::optional<bool> flag() {
        skipSeparators();
        if (!peek(u'0') && !peek(u'1')) {
            return std::nullopt;
        }
        return text_[position_++] == u'1';
    }

    std::optional<QPointF> point(QPointF origin) {
        const auto x = number();
        const auto y = x ? number() : std::nullopt;
        return y ? std::optional(origin + QPointF(*x, *y)) : std::nullopt;
    }

private:
    [[nodiscard]] bool peek(char16_t character) const {
        return position_ < text_.size() && text_[position_] == character;
    }

    void skipDigits() {
        while (position_ < text_.size() && text_[position_] >= u'0' && text_[position_] <= u'9') {
            ++position_;
        }
    }

    void skipSeparators() {
        while (position_ < text_.size() && (text_[position_].isSpace() || text_[position_] == u',')) {
            ++position_;
        }
    }

    QStringView text_;
    qsizetype position_ = 0;
};

struct Arc {
    double radiusX;
    double radiusY;
    bool large;
    bool clockwise; // on screen, y pointing down
    QPointF end;
};

// Finds the centre of an elliptical arc from its two end points: the ellipse is scaled to a unit circle,
// where the centre lies on the perpendicular bisector of the chord, on the side that the two flags select.
void addArc(QPainterPath& path, const Arc& arc) {
    const QPointF start = path.currentPosition();
    if (start == arc.end) {
        return;
    }
    double radiusX = std::abs(arc.radiusX);
    double radiusY = std::abs(arc.radiusY);
    if (radiusX == 0.0 || radiusY == 0.0) {
        path.lineTo(arc.end);
        return;
    }
    const QPointF from(start.x() / radiusX, start.y() / radiusY);
    const QPointF to(arc.end.x() / radiusX, arc.end.y() / radiusY);
    const QPointF chord = to - from;
    const double halfChord = std::hypot(chord.x(), chord.y()) / 2.0;
    const double scale = std::max(1.0, halfChord); // radii too small for the chord grow until they reach
    const double distance = std::sqrt(std::max(0.0, scale * scale - halfChord * halfChord));
    const double side = arc.large == arc.clockwise ? 1.0 : -1.0;
    const QPointF normal(chord.y() / (2.0 * halfChord), -chord.x() / (2.0 * halfChord));
    const QPointF center = (from + to) / 2.0 + normal * (side * distance);
    radiusX *= scale;
    radiusY *= scale;

    // QPainterPath measures angles counterclockwise on screen.
    const QPointF startVector = from - center;
    const QPointF endVector = to - center;
    const double startAngle = -std::atan2(startVector.y(), startVector.x()) * degreesPerRadian;
    const double endAngle = -std::atan2(endVector.y(), endVector.x()) * degreesPerRadian;
    double sweep = endAngle - startAngle;
    if (arc.clockwise && sweep > 0.0) {
        sweep -= 360.0;
    }
    if (!arc.clockwise && sweep < 0.0) {
        sweep += 360.0;
    }
    const QPointF centerOnPath(center.x() * radiusX / scale, center.y() * radiusY / scale);
    path.arcTo(QRectF(centerOnPath.x() - radiusX, centerOnPath.y() - radiusY, 2.0 * radiusX, 2.0 * radiusY),
               startAngle, sweep);
}

std::optional<Arc> readArc(Reader& reader, QPointF origin) {
    const auto radiusX = reader.number();
    const auto radiusY = radiusX ? reader.number() : std::nullopt;
    const auto rotation = radiusY ? reader.number() : std::nullopt;
    const auto large = rotation ? reader.flag() : std::nullopt;
    const auto clockwise = large ? reader.flag() : std::nullopt;
    const auto end = clockwise ? reader.point(origin) : std::nullopt;
    if (!end || (*rotation != 0.0 && *radiusX != *radiusY)) {
        return std::nullopt;
    }
    return Arc{*radiusX, *radiusY, *large, *clockwise, *end};
}

// Adds one command with one set of arguments. Returns false if it is not supported.
bool addSegment(QPainterPath& path, Reader& reader, QChar command) {
    const QPointF here = path.currentPosition();
    const QPointF origin = command.isLower() ? here : QPointF();
    switch (command.toUpper().unicode()) {
    case u'M':
    case u'L': {
        const auto end = reader.point(origin);
        if (!end) {
            return false;
        }
        if (command.toUpper() == u'M') {
            path.moveTo(*end);
        } else {
            path.lineTo(*end);
        }
        return true;
    }
    case u'H': {
        const auto x = reader.number();
        if (x) {
            path.lineTo(origin.x() + *x, here.y());
        }
        return x.has_value();
    }
    case u'V': {
        const auto y = reader.number();
        if (y) {
            path.lineTo(here.x(), origin.y() + *y);
        }
        return y.has_value();
    }
    case u'C': {
        const auto first = reader.point(origin);
        const auto second = first ? reader.point(origin) : std::nullopt;
        const auto end = second ? reader.point(origin) : std::nullopt;
        if (end) {
            path.cubicTo(*first, *second, *end);
        }
        return end.has_value();
    }
    case u'Q': {
        const auto control = reader.point(origin);
        const auto end = control ? reader.point(origin) : std::nullopt;
        if (end) {
            path.quadTo(*control, *end);
        }
        return end.has_value();
    }
    case u'A': {
        const auto arc = readArc(reader, origin);
        if (arc) {
            addArc(path, *arc);
        }
        return arc.has_value();
    }
    default:
        return false;
    }
}

} // namespace

std::optional<QPainterPath> painterPath(QStringView data) {
    QPainterPath path;
    Reader reader(data);
    QChar command;
    while (!reader.atEnd()) {
        if (reader.atLetter()) {
            command = reader.letter();
            if (path.elementCount() == 0 && command.toUpper() != u'M') {
                return std::nullopt;
            }
            if (command.toUpper() == u'Z') {
                path.closeSubpath();
                command = QChar();
                continue;
            }
        } else if (command.toUpper() == u'M') {
            command = command.isLower() ? u'l' : u'L'; // further pairs after a move are lines
        }
        if (!addSegment(path, reader, command)) {
            return std::nullopt;
        }
    }
    return path;
}

} // namespace Fenwhirl
