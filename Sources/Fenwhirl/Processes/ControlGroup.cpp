#include "Fenwhirl/Processes/ControlGroup.h"

namespace Fenwhirl {

namespace {

int hexDigit(QChar digit) {
    bool isValid = false;
    const int value = QString(digit).toInt(&isValid, 16);
    return isValid ? value : -1;
}

// systemd writes bytes that are not allowed in a unit's name as "\x2d".
QString unescapedUnitName(QStringView text) {
    QByteArray bytes;
    for (qsizetype i = 0; i < text.size();) {
        if (text[i] == u'\\' && i + 3 < text.size() && text[i + 1] == u'x' && hexDigit(text[i + 2]) >= 0 &&
            hexDigit(text[i + 3]) >= 0) {
            bytes.append(static_cast<char>(hexDigit(text[i + 2]) * 16 + hexDigit(text[i + 3])));
            i += 4;
        } else {
            const qsizetype length = text[i].isHighSurrogate() && i + 1 < text.size() ? 2 : 1;
            bytes.append(text.sliced(i, length).toUtf8());
            i += length;
        }
    }
    return QString::fromUtf8(bytes);
}

// The last part of the path that names a unit. A service may have further groups below its own.
QStringView innermostUnit(QStringView group) {
    QStringView innermost;
    for (const QStringView part : group.split(u'/')) {
        if (part.endsWith(u".scope") || part.endsWith(u".service")) {
            innermost = part;
        }
    }
    return innermost;
}

QStringView withoutSuffix(QStringView unit) {
    return unit.first(unit.lastIndexOf(u'.'));
}

} // namespace

QString controlGroupIn(const QByteArray& text) {
    QString named;
    for (const QByteArray& line : text.split('\n')) {
        // "0::PATH" is the unified hierarchy; "1:name=systemd:PATH" is systemd's own beside older ones.
        if (line.startsWith("0::/") && line.size() > 4) {
            return QString::fromUtf8(line.sliced(3));
        }
        const qsizetype place = line.indexOf(":name=systemd:");
        if (place > 0) {
            named = QString::fromUtf8(line.sliced(place + 14));
        }
    }
    return named;
}

QStringList applicationIdsIn(QStringView group) {
    const QStringView unit = innermostUnit(group);
    const bool isApplication = unit.startsWith(u"app-");
    const bool isBusName = unit.startsWith(u"dbus-:"); // "dbus-:1.2-NAME@0.service"
    if (!isApplication && !isBusName) {
        return {};
    }
    QStringView name = withoutSuffix(unit);
    if (unit.endsWith(u".service")) {
        if (const qsizetype instance = name.indexOf(u'@'); instance >= 0) {
            name = name.first(instance);
        }
    } else {
        name = name.first(std::max<qsizetype>(name.lastIndexOf(u'-'), 0)); // drops the random suffix
    }
    QStringList ids;
    for (qsizetype dash = name.indexOf(u'-'); dash >= 0; dash = name.indexOf(u'-', dash + 1)) {
        if (dash + 1 < name.size()) {
            ids.append(unescapedUnitName(name.sliced(dash + 1)));
        }
    }
    return ids;
}

std::optional<SnapName> snapIn(QStringView group) {
    const QStringView unit = innermostUnit(group);
    if (!unit.startsWith(u"snap.")) {
        return std::nullopt;
    }
    const auto parts = withoutSuffix(unit).split(u'.');
    if (parts.size() < 3 || parts[1].isEmpty()) {
        return std::nullopt;
    }
    // A UUID may follow the program's name after a dash. It contains dashes, and so may the name, so it is
    // recognised by its length.
    QStringView program = parts[2];
    constexpr qsizetype identifier = 36;
    if (parts.size() == 3 && program.size() > identifier + 1 &&
        program[program.size() - identifier - 1] == u'-') {
        program.chop(identifier + 1);
    }
    return SnapName{unescapedUnitName(parts[1]), unescapedUnitName(program)};
}

bool isDesktopComponent(QStringView group) {
    return group.contains(u"/session.slice/");
}

} // namespace Fenwhirl
