// Answers Qt's translation calls (QML's qsTr) from Localizer's look-up.
//
// The source text is the French text. Context and comment are ignored, because the same French text has the
// same meaning everywhere. The exceptions are requested in English: the contexts "MAC_APPLICATION_MENU" (Qt's
// own) and "SystemTerms" get the system's terms (SystemTerms), and the contexts of Qt's own dialogs get
// translations in the languages for which Qt has none (DialogTexts). A text without a row stays unchanged.
//
// Install one with QCoreApplication::installTranslator before the first view is created, and keep it alive as
// long as the application. After a change of language, QQmlEngine::retranslate() requests every text again.

#pragma once

#include <QTranslator>

namespace Fenwhirl {

class LocalizerTranslator : public QTranslator {
    Q_OBJECT

public:
    using QTranslator::QTranslator;

    [[nodiscard]] bool isEmpty() const override { return false; }

    [[nodiscard]] QString translate(const char* context, const char* sourceText,
                                    const char* disambiguation = nullptr, int n = -1) const override;
};

} // namespace Fenwhirl
