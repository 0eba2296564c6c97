#include "SimulatedMac/StateText.h"

#include "SimulatedMac/Terminal.h"
#include "SimulatedMac/TextParsing.h"
#include "SimulatedMac/ValueCoding.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>
#include <vector>

namespace simulated {

namespace {

constexpr std::size_t shownSensors = 12;

double die(const Mac& mac) {
    return at(mac.state().thermal.celsius, ThermalNode::die);
}

double graphics(const Mac& mac) {
    return at(mac.state().thermal.celsius, ThermalNode::graphics);
}

std::string unlockText(const Mac& mac, double steadySeconds) {
    if (!mac.fans().hasUnlock()) {
        return "none";
    }
    if (mac.keys().number(fourCC("Ftst")).value_or(0) == 0) {
        return "locked";
    }
    return mac.fans().isUnlocked(mac.keys(), steadySeconds) ? "open" : "waiting";
}

std::string modeText(const Mac& mac, unsigned fan) {
    return mac.fans().isManual(mac.keys(), fan) ? "manual" : "automatic";
}

std::string padded(std::string text, std::size_t width) {
    text.resize(std::max(width, text.size()), ' ');
    return text;
}

std::string rightPadded(const std::string& text, std::size_t width) {
    return text.size() < width ? std::string(width - text.size(), ' ') + text : text;
}

std::string whole(double value) {
    return fixedText(value, 0);
}

} // namespace

std::string stateLine(const CommandContext& context, Instant now) {
    const Mac& mac = context.mac;
    const MacState& state = mac.state();
    std::string text =
        "machine=" + mac.machineName() + " time=" + fixedText(state.seconds, 3) +
        " speed=" + fixedText(mac.speed(), 2) + " asleep=" + (mac.isAsleep() ? "1" : "0") +
        " heat=" + mac.heatSource().name() + " watts=" + fixedText(mac.heat().processorWatts, 1) +
        " graphicswatts=" + fixedText(mac.heat().graphicsWatts, 1) + " die=" + fixedText(die(mac), 2) +
        " graphics=" + fixedText(graphics(mac), 2) + " granted=" + fixedText(grantedPower(die(mac)), 2);
    for (unsigned fan = 0; fan < state.fanCount; ++fan) {
        text += " fan" + std::to_string(fan) + "=" + whole(state.fans[fan].rpm) + "/" +
                whole(state.fans[fan].targetRPM) + "/" + modeText(mac, fan);
    }
    return text + " unlock=" + unlockText(mac, now.steadySeconds) +
           " fault=" + faultText(context.faults.current()) +
           " clients=" + std::to_string(context.counters.clients) +
           " connections=" + std::to_string(context.counters.connections) +
           " requests=" + std::to_string(context.counters.requests) +
           " writes=" + std::to_string(mac.writes().last());
}

std::string stateTable(const CommandContext& context) {
    const Mac& mac = context.mac;
    const MacState& state = mac.state();
    std::string text = "machine     " + mac.machineName() + (mac.isAsleep() ? ", asleep" : "") + "\n";
    text += "heat        " + fixedText(mac.heat().processorWatts, 1) + " W processor, " +
            fixedText(mac.heat().graphicsWatts, 1) + " W graphics (" + mac.heatSource().name() + ")\n";
    text += "processor   " + fixedText(die(mac), 1) + " °C";
    text += grantedPower(die(mac)) < 0.995
                ? ", slowed down to " + whole(100 * grantedPower(die(mac))) + " % of that power\n"
                : "\n";
    for (unsigned fan = 0; fan < state.fanCount; ++fan) {
        text += "fan " + std::to_string(fan) + "       " + rightPadded(whole(state.fans[fan].rpm), 5) +
                " rpm, target " + whole(state.fans[fan].targetRPM) + ", " + modeText(mac, fan) + "\n";
    }
    std::vector<std::pair<double, std::string>> moved;
    for (const Sensor& sensor : mac.model().sensors) {
        const Key& key = mac.keys().at(sensor.keyIndex);
        const double celsius = decodeValue(key.record.type, key.shown()).value_or(0);
        moved.emplace_back(-std::abs(celsius - sensor.recordedCelsius),
                           padded(fourCCText(sensor.code), 12) + fixedText(celsius, 1) + " °C (recorded " +
                               fixedText(sensor.recordedCelsius, 1) + ")" + (key.pinned ? ", pinned" : ""));
    }
    const std::size_t count = std::min(shownSensors, moved.size());
    std::partial_sort(moved.begin(), moved.begin() + static_cast<std::ptrdiff_t>(count), moved.end());
    for (std::size_t i = 0; i < count; ++i) {
        text += moved[i].second + "\n";
    }
    return text;
}

std::string liveLine(const CommandContext& context) {
    const Mac& mac = context.mac;
    const MacState& state = mac.state();
    const std::string gap(Terminal::gap);
    const auto temperature = [&](std::string_view part, ThermalNode node) {
        return gap + std::string(part) + " " + fixedText(at(state.thermal.celsius, node), 1) + " °C";
    };
    std::string text = mac.machineName() + temperature("processor", ThermalNode::die);
    if (mac.model().powers.graphicsWatts > 0) {
        text += temperature("graphics", ThermalNode::graphics);
    }
    text += temperature("case", ThermalNode::enclosure);
    if (state.fanCount > 0) {
        bool manual = false;
        text += gap + (state.fanCount == 1 ? "fan" : "fans");
        for (unsigned fan = 0; fan < state.fanCount; ++fan) {
            text += (fan > 0 ? " · " : " ") + rightPadded(whole(state.fans[fan].rpm), 4);
            manual = manual || mac.fans().isManual(mac.keys(), fan);
        }
        text += manual ? " rpm, manual" : " rpm";
    }
    text += gap + fixedText(mac.heat().processorWatts + mac.heat().graphicsWatts, 1) + " W";
    if (mac.isAsleep()) {
        text += gap + "asleep";
    }
    const std::size_t clients = context.counters.clients;
    return text + gap + (clients == 0 ? "no" : std::to_string(clients)) +
           (clients == 1 ? " client" : " clients");
}

} // namespace simulated
