// Serbian in its other script: the Cyrillic form of a Serbian Latin text, letter by letter.
//
// Words that Serbian Cyrillic texts keep in Latin letters (product names, "CPU", "Wi-Fi", the unit "°C") and
// the placeholders "%@" pass unchanged, and so does every character that is not a Serbian letter. Letters are
// taken as the user perceives them: a letter written with a combining mark counts as its composed form.
//
// Pure; any thread. Takes any text: lone surrogates and characters of any script come out as they went in.

#pragma once

#include <QString>
#include <QStringView>

namespace Cyrillic {

[[nodiscard]] QString convert(QStringView text);

} // namespace Cyrillic
