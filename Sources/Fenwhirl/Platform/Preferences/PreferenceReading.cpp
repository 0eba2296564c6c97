#include "Fenwhirl/Platform/Preferences/PreferenceReading.h"

#include <QLocale>

#include <cmath>

namespace Fenwhirl {

namespace {

struct NumberReader {
    double operator()(const QString& text) const {
        const double number = QLocale::c().toDouble(text.trimmed());
        return std::isfinite(number) ? number : 0;
    }

    double operator()(bool value) const { return value ? 1 : 0; }

    double operator()(double number) const { return number; }

    double operator()(const QByteArray& /*data*/) const { return 0; }

    double operator()(const UnknownPreference& /*unknown*/) const { return 0; }
};

struct BooleanReader {
    bool operator()(const QString& text) const {
        const QString word = text.trimmed().toLower();
        return word == QStringLiteral("yes") || word == QStringLiteral("true") || word == QStringLiteral("1");
    }

    bool operator()(bool value) const { return value; }

    bool operator()(double number) const { return number != 0; }

    bool operator()(const QByteArray& /*data*/) const { return false; }

    bool operator()(const UnknownPreference& /*unknown*/) const { return false; }
};

} // namespace

std::optional<double> readAsNumber(const std::optional<PreferenceValue>& value) {
    return value ? std::optional(std::visit(NumberReader(), *value)) : std::nullopt;
}

std::optional<bool> readAsBoolean(const std::optional<PreferenceValue>& value) {
    return value ? std::optional(std::visit(BooleanReader(), *value)) : std::nullopt;
}

} // namespace Fenwhirl
