#include "Fenwhirl/Views/Components/LineBreaks.h"

#include <gtest/gtest.h>

using Fenwhirl::keptTogether;
using namespace Qt::StringLiterals;

namespace {

TEST(LineBreaks, KeepANumberWithItsUnit) {
    EXPECT_EQ(keptTogether(u"La protection à 92 °C ne change pas."_s),
              u"La protection à 92\u00a0°C ne change pas."_s);
    EXPECT_EQ(keptTogether(u"Blender (37 %)"_s), u"Blender (37\u00a0%)"_s);
}

TEST(LineBreaks, KeepFrenchSignsWithTheirWords) {
    EXPECT_EQ(keptTogether(u"Fermer Mail ?"_s), u"Fermer Mail\u00a0?"_s);
    EXPECT_EQ(keptTogether(u"Activé : vrai ! Ou ; non ?"_s),
              u"Activé\u00a0: vrai\u00a0! Ou\u00a0; non\u00a0?"_s);
    EXPECT_EQ(keptTogether(u"« Automatique » suit"_s), u"«\u00a0Automatique\u00a0» suit"_s);
}

TEST(LineBreaks, LetNoLineBeginWithADashOrDots) {
    EXPECT_EQ(keptTogether(u"«Автоматически» — на языке"_s), u"«Автоматически»\u00a0— на языке"_s);
    EXPECT_EQ(keptTogether(u"Wird erstellt …"_s), u"Wird erstellt\u00a0…"_s);
}

TEST(LineBreaks, ChangeNothingElse) {
    for (const QString& text :
         {u""_s, u" "_s, u"%"_s, u" %"_s, u"% "_s, u"« "_s, u"Disk 2 has 3 keys: yes?"_s, u"a\n: b"_s,
          u"日本 語"_s, u"already\u00a0: so"_s, u"C'est déjà l'heure."_s})
        EXPECT_EQ(keptTogether(text), text) << text.toStdString();
    const QString loneSurrogate = QString(QChar(0xD83D)) + u" : "_s;
    EXPECT_EQ(keptTogether(loneSurrogate).size(), loneSurrogate.size());
}

} // namespace
