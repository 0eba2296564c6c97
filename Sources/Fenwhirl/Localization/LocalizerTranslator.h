// Answers Qt's translation calls (QML's qsTr) from the lookup.
//
// The source text is the French text; context and comment play no part, since the same French words mean the
// same wherever they stand. Two contexts are asked in English and answered with the words of the system
// (SystemWords): "MAC_APPLICATION_MENU", Qt's own, and "SystemWords". The contexts of Qt's own dialogs are
// answered in the languages for which Qt has no texts (DialogWords). A text without a row stays as it is.
//
// Install one with QCoreApplication::installTranslator before the first view is made and keep it alive as
// long as the application. After a change of language QQmlEngine::retranslate() asks for every text again.

#pragma once

#include <QTranslator>

class LocalizerTranslator : public QTranslator {
    Q_OBJECT

public:
    using QTranslator::QTranslator;

    [[nodiscard]] bool isEmpty() const override { return false; }

    [[nodiscard]] QString translate(const char* context, const char* sourceText,
                                    const char* disambiguation = nullptr, int n = -1) const override;
};
