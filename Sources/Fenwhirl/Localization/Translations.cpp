#include "Fenwhirl/Localization/Translations.h"

#include "Fenwhirl/Localization/Tables/English.h"
#include "Fenwhirl/Localization/Tables/German.h"
#include "Fenwhirl/Localization/Tables/Italian.h"
#include "Fenwhirl/Localization/Tables/Portuguese.h"
#include "Fenwhirl/Localization/Tables/Russian.h"
#include "Fenwhirl/Localization/Tables/SerbianLatin.h"
#include "Fenwhirl/Localization/Tables/Spanish.h"

namespace Fenwhirl::Translations {

const TranslationTable& en() {
    static const TranslationTable table(englishTexts);
    return table;
}

const TranslationTable& sr() {
    static const TranslationTable table(serbianLatinTexts);
    return table;
}

const TranslationTable& de() {
    static const TranslationTable table(germanTexts);
    return table;
}

const TranslationTable& es() {
    static const TranslationTable table(spanishTexts);
    return table;
}

const TranslationTable& it() {
    static const TranslationTable table(italianTexts);
    return table;
}

const TranslationTable& pt() {
    static const TranslationTable table(portugueseTexts);
    return table;
}

const TranslationTable& ru() {
    static const TranslationTable table(russianTexts);
    return table;
}

} // namespace Fenwhirl::Translations
