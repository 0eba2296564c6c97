// Transliterates Serbian from Latin to Cyrillic script, letter by letter.
//
// Words that Serbian Cyrillic texts keep in Latin script (product names, "CPU", "Wi-Fi", the unit
// "°C") and the placeholders "%@" are left unchanged, and so is every character that is not a Serbian
// letter. Letters are taken as the user perceives them: a letter written with a combining mark is
// treated as its composed form.
//
// Pure; any thread. Accepts any text: lone surrogates and characters of other scripts come out unchanged.

#pragma once

#include <QString>
#include <QStringView>

namespace Fenwhirl::Cyrillic {

[[nodiscard]] QString convert(QStringView text);

} // namespace Fenwhirl::Cyrillic
