// What a text lookup costs. A page shows about fifty texts, so a redraw makes fifty lookups, and a frame
// lasts 16 ms. RedrawLookupsTest counts the lookups that a page really makes.

#include "Fenwhirl/Localization/Cyrillic.h"
#include "Fenwhirl/Localization/FrenchTexts.h"
#include "Fenwhirl/Localization/Localizer.h"
#include "Fenwhirl/Localization/LocalizerTranslator.h"
#include "Fenwhirl/Localization/SensorLabel.h"

#include <benchmark/benchmark.h>
#include <cstddef>

namespace Fenwhirl {

namespace {

// Looks up every text of the interface in turn, so that short labels and long notes have the same weight as
// in the program.
void lookups(benchmark::State& state, AppLanguage language) {
    Localizer::setLanguage(language);
    std::size_t next = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(Localizer::lookup(QStringView(frenchTexts[next])));
        next = next + 1 < frenchTexts.size() ? next + 1 : 0;
    }
    state.SetItemsProcessed(state.iterations());
}

// Looks a text up as qsTr does, in UTF-8.
void translations(benchmark::State& state, AppLanguage language) {
    Localizer::setLanguage(language);
    const LocalizerTranslator translator;
    for (auto _ : state) {
        benchmark::DoNotOptimize(translator.translate("", "Température du processeur"));
    }
    state.SetItemsProcessed(state.iterations());
}

void sensorLabels(benchmark::State& state, AppLanguage language) {
    Localizer::setLanguage(language);
    const QString key = QStringLiteral("Tp0D");
    for (auto _ : state) {
        benchmark::DoNotOptimize(SensorLabel::name(key));
    }
    state.SetItemsProcessed(state.iterations());
}

} // namespace

BENCHMARK_CAPTURE(lookups, French, AppLanguage::fr);
BENCHMARK_CAPTURE(lookups, German, AppLanguage::de);
BENCHMARK_CAPTURE(lookups, SerbianCyrillic, AppLanguage::srCyrl);
BENCHMARK_CAPTURE(lookups, FollowingTheSystem, AppLanguage::automatic);
BENCHMARK_CAPTURE(translations, German, AppLanguage::de);
BENCHMARK_CAPTURE(translations, SerbianCyrillic, AppLanguage::srCyrl);
BENCHMARK_CAPTURE(sensorLabels, German, AppLanguage::de);

} // namespace Fenwhirl
