#include "Fenwhirl/Platform/PosixLanguages.h"

#include <QStringView>

namespace Fenwhirl {

namespace {

// The part of the name before the first of the given characters.
QStringView before(QStringView name, QStringView ends) {
    for (qsizetype i = 0; i < name.size(); ++i) {
        if (ends.contains(name[i])) {
            return name.first(i);
        }
    }
    return name;
}

QString languageTag(QStringView name) {
    const QStringView place = before(name, u".@");
    QString tag = before(place, u"_").toString();
    if (name.endsWith(u"@latin")) {
        tag += u"-Latn";
    } else if (name.endsWith(u"@cyrillic")) {
        tag += u"-Cyrl";
    }
    const qsizetype territory = place.indexOf(u'_');
    if (territory >= 0) {
        tag.append(u'-').append(place.sliced(territory + 1));
    }
    return tag;
}

} // namespace

QStringList languageTagsFromPosix(const QString& languages, const QString& messageLocale) {
    QStringList tags;
    const QStringList names = languages.split(u':', Qt::SkipEmptyParts) << messageLocale;
    for (const QString& name : names) {
        const QStringView language = before(name, u".@");
        if (language == u"C" || language == u"POSIX") {
            break;
        }
        if (!language.isEmpty()) {
            tags.append(languageTag(name));
        }
    }
    return tags;
}

} // namespace Fenwhirl
