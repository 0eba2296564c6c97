#include "Fenwhirl/Monitoring/Preset.h"

#include "Fenwhirl/Localization/Localizer.h"
#include "Fenwhirl/Monitoring/RawValues.h"

namespace Fenwhirl {

namespace {

constexpr RawValueTable<Preset, 5> presetWords = {{{Preset::automatic, "auto"},
                                                   {Preset::silent, "silent"},
                                                   {Preset::balanced, "balanced"},
                                                   {Preset::game, "game"},
                                                   {Preset::max, "max"}}};

FanSetting curve(double startTemp, double maxTemp) {
    return {.mode = FanModeKind::sensor, .sensorKey = {}, .startTemp = startTemp, .maxTemp = maxTemp};
}

} // namespace

std::string_view rawValue(Preset preset) {
    return rawValueIn(presetWords, preset);
}

std::optional<Preset> presetFromRawValue(std::string_view text) {
    return caseIn(presetWords, text);
}

std::optional<Preset> presetFromName(const QString& name) {
    const QString wanted = name.trimmed().normalized(QString::NormalizationForm_C);
    if (const auto preset = presetFromRawValue(wanted.toLower().toStdString())) {
        return preset;
    }
    const AppLanguage before = Localizer::language();
    std::optional<Preset> found;
    for (const AppLanguage language : allAppLanguages) {
        Localizer::setLanguage(language);
        for (const Preset preset : allPresets) {
            if (!found && title(preset).compare(wanted, Qt::CaseInsensitive) == 0) {
                found = preset;
            }
        }
    }
    Localizer::setLanguage(before);
    return found;
}

QString title(Preset preset) {
    switch (preset) {
    case Preset::automatic:
        return localized(u"Auto");
    case Preset::silent:
        return localized(u"Silencieux");
    case Preset::balanced:
        return localized(u"Équilibré");
    case Preset::game:
        return localized(u"Jeu");
    case Preset::max:
        return localized(u"Max");
    }
    return {};
}

QString detail(Preset preset) {
    switch (preset) {
    case Preset::automatic:
        return localized(u"Laisse macOS gérer les ventilateurs, comme d'origine.");
    case Preset::silent:
        return localized(u"Ventilateurs discrets : ils accélèrent seulement quand le Mac chauffe vraiment.");
    case Preset::balanced:
        return localized(u"Bon compromis entre bruit et fraîcheur pour l'usage de tous les jours.");
    case Preset::game:
        return localized(u"Refroidit tôt pour les jeux et les gros calculs.");
    case Preset::max:
        return localized(
            u"Ventilateurs à fond en permanence. Bruyant, mais le Mac reste le plus frais possible.");
    }
    return {};
}

FanSetting settingFor(Preset preset, double maxRPM) {
    switch (preset) {
    case Preset::automatic:
        return {};
    case Preset::silent:
        return curve(65, 95);
    case Preset::balanced:
        return curve(50, 90);
    case Preset::game:
        return curve(40, 80);
    case Preset::max:
        return {.mode = FanModeKind::constant, .constantRPM = maxRPM, .sensorKey = {}};
    }
    return {};
}

} // namespace Fenwhirl
