#include "FenwhirlCore/SensorNames.h"

#include <algorithm>
#include <array>
#include <iterator>

namespace Fenwhirl::SensorNames {

namespace {

struct Name {
    std::string_view key;
    std::string_view french;
};

constexpr auto table = std::to_array<Name>({
    {"TC0P", "Processeur (proximité)"},
    {"TC0D", "Processeur (diode)"},
    {"TC0E", "Processeur (E)"},
    {"TC0F", "Processeur (F)"},
    {"TC0H", "Processeur (radiateur)"},
    {"TCXC", "Processeur (PECI)"},
    {"TCGC", "Graphisme (PECI)"},
    {"TCSA", "Système (PECI)"},
    {"TG0P", "Graphisme"},
    {"TG0D", "Graphisme (diode)"},
    {"TG0H", "Graphisme (radiateur)"},
    {"TGDD", "Graphisme (diode)"},
    {"TM0P", "Mémoire"},
    {"TM0S", "Mémoire (module)"},
    {"Th0H", "Radiateur"},
    {"TH0A", "Disque SSD"},
    {"TH0a", "Disque SSD"},
    {"TH0B", "Disque SSD 2"},
    {"TH0b", "Disque SSD 2"},
    {"TH0P", "Disque SSD"},
    {"Ts0P", "Repose-mains"},
    {"Ts1P", "Repose-mains 2"},
    {"Ts0S", "Surface"},
    {"TaLP", "Air (gauche)"},
    {"TaRF", "Air (droite)"},
    {"TA0P", "Air ambiant"},
    {"TB0T", "Batterie"},
    {"TB1T", "Batterie 2"},
    {"TB2T", "Batterie 3"},
    {"TW0P", "Wi-Fi"},
    {"Tp0P", "Alimentation"},
    {"TPCD", "Contrôleur de plateforme"},
    {"TL0P", "Écran"},
    {"TN0P", "Chipset"},
    {"TN0D", "Chipset (diode)"},
});

template <std::size_t Count>
constexpr bool isEachKeyThereOnce(const std::array<Name, Count>& names) {
    return std::ranges::all_of(
        names, [&](const Name& name) { return std::ranges::count(names, name.key, &Name::key) == 1; });
}

static_assert(isEachKeyThereOnce(table), "a key has two names, of which only the first is ever shown");

// Families of keys that are numbered; the number follows the two-character prefix.
constexpr auto families = std::to_array<Name>({
    {"Tp", "Cœur performance "},
    {"Tf", "Cœur performance "},
    {"Te", "Cœur efficacité "},
    {"Tg", "Graphisme "},
    {"Tm", "Mémoire "},
    {"Ts", "Surface "},
    {"Tb", "Batterie "},
});

std::string join(std::string_view word, std::string_view rest) {
    return std::string(word).append(rest);
}

// Only ASCII digits are checked, because a controller's keys are ASCII.
bool isNumberedCore(std::string_view key) {
    return key.size() == 4 && key.starts_with("TC") && key[3] == 'C' && key[2] >= '0' && key[2] <= '9';
}

} // namespace

std::string friendly(std::string_view key) {
    if (const auto* entry = std::ranges::find(table, key, &Name::key); entry != table.end()) {
        return std::string(entry->french);
    }
    if (isNumberedCore(key)) {
        return join("Cœur CPU ", key.substr(2, 1));
    }
    const std::string_view prefix = key.substr(0, 2);
    if (const auto* family = std::ranges::find(families, prefix, &Name::key); family != families.end()) {
        return join(family->french, key.substr(prefix.size()));
    }
    return join("Capteur ", key);
}

std::vector<std::string_view> wellKnownKeys() {
    std::vector<std::string_view> keys;
    keys.reserve(table.size());
    std::ranges::transform(table, std::back_inserter(keys), &Name::key);
    return keys;
}

} // namespace Fenwhirl::SensorNames
