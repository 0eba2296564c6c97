// The diagnostic report: which machine this is, and every fan and temperature key with its raw bytes.

#include "FenwhirlCore/NumberText.h"
#include "FenwhirlCore/Platform/SystemText.h"
#include "FenwhirlCore/Precondition.h"
#include "FenwhirlCore/SMC.h"

namespace Fenwhirl {

namespace {

void appendHexadecimal(std::string& text, std::span<const std::uint8_t> bytes) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        if (i > 0) {
            text += ' ';
        }
        text += digits[bytes[i] >> 4U];
        text += digits[bytes[i] & 0xFU];
    }
}

void appendLine(std::string& text, std::string_view line) {
    text.append("\n").append(line);
}

} // namespace

std::string SMC::describe(std::string_view key) {
    std::string line(key);
    const auto value = read(key);
    if (!value) {
        return line += " : illisible";
    }
    const auto bytes = value->visibleBytes();
    line.append(" | type ").append(string(value->info.type));
    line.append(" | ").append(std::to_string(bytes.size())).append(" octets | ");
    appendHexadecimal(line, bytes);
    const auto number = value->number();
    return line.append(" | valeur ").append(number ? NumberText::twoDecimals(*number) : "?");
}

std::string SMC::diagnosticReport() {
    return diagnosticReport(thisSystem());
}

std::string SMC::diagnosticReport(const SystemText& system) {
    std::string report = "Fenwhirl : rapport de diagnostic";
    appendLine(report, "Modèle du Mac : " + sysctlString("hw.model", system));
    appendLine(report, "Processeur : " + sysctlString("machdep.cpu.brand_string", system));
    appendLine(report, "Programme : arm64 (natif Apple)");
    appendLine(report, std::string("Lancé via Rosetta : ") + (system.isTranslated() ? "oui" : "non"));
    appendLine(report, "macOS : " + system.version());
    const auto keyCount = NumberText::exactWhole(readValue("#KEY").value_or(0));
    if (!keyCount) {
        stopOnBrokenPrecondition();
    }
    appendLine(report, "Nombre de clés SMC : " + std::to_string(*keyCount));
    appendLine(report, "Nombre de ventilateurs (FNum) : " + std::to_string(fanCount()));

    const auto keys = allKeys();
    appendLine(report, "");
    appendLine(report, "-- Clés des ventilateurs (F…) --");
    for (const std::string& key : keys) {
        if (key.starts_with('F')) {
            appendLine(report, describe(key));
        }
    }

    appendLine(report, "");
    appendLine(report, "-- Températures (T…) --");
    int sensorCount = 0;
    for (const std::string& key : keys) {
        if (!key.starts_with('T')) {
            continue;
        }
        const auto keyInfo = info(key);
        if (!keyInfo || !read(key, *keyInfo)) {
            continue;
        }
        // Not filtered by range: implausible sensors are what a reader of the report looks for.
        if (const std::string type = string(keyInfo->type); type == "sp78" || type == "flt ") {
            appendLine(report, describe(key));
            ++sensorCount;
        }
    }
    appendLine(report, "Total : " + std::to_string(sensorCount) + " capteurs de température");
    return report;
}

} // namespace Fenwhirl
