#include "FaultyMac.h"

#include "FenwhirlCore/SMC.h"

#include <cmath>
#include <cstdlib>

namespace Fenwhirl {

namespace {

std::string fanKey(int fan, const char* suffix) {
    return "F" + std::to_string(fan) + suffix;
}

bool isTarget(std::uint32_t code) {
    return code >> 24U == 'F' && (code & 0xFFFFU) == (std::uint32_t{'T'} << 8U | 'g');
}

ScriptedSMC::Reply refusal(std::uint8_t result) {
    SMCParam output{};
    output.result = result;
    return output;
}

} // namespace

FaultyMac::FaultyMac(ScriptedSMC& controller, std::mt19937& generator) : controller_(controller) {
    const auto below = [&](unsigned count) { return static_cast<int>(generator() % count); };
    const int count = below(5);
    const int kind = below(4);
    if (kind == 0) {
        controller_.addUnlockableFans(count);
    } else {
        controller_.addOlderFans(count); // these fans have a mask
        for (int fan = 0; kind != 1 && fan < count; ++fan) {
            controller_.setNumber(fanKey(fan, "Md"), "ui8 ", 0); // with mode keys in addition
        }
        if (kind == 3) {
            controller_.remove("FS! "); // with mode keys only
        }
    }
    const int gap = below(3) == 0 ? below(4) : -1;
    for (int fan = 0; fan < count; ++fan) {
        if (fan == gap) {
            for (const char* suffix : {"Ac", "Mn", "Mx", "Tg", "Md"}) {
                controller_.remove(fanKey(fan, suffix));
            }
            continue;
        }
        if (controller_.has(fanKey(fan, "Md")) && below(4) == 0) {
            controller_.remove(fanKey(fan, "Md"));
            controller_.setNumber(fanKey(fan, "md"), "ui8 ", 0);
        }
        const Fan limits{
            .index = fan, .minimum = 600.0 + 50 * below(20), .maximum = 3000.0 + 50 * below(80) + below(3)};
        const std::string type = controller_.at(fanKey(fan, "Mn")).type;
        controller_.setNumber(fanKey(fan, "Mn"), type, limits.minimum);
        controller_.setNumber(fanKey(fan, "Mx"), type, limits.maximum);
        controller_.setNumber(fanKey(fan, "Ac"), type, limits.minimum + 40);
        controller_.setNumber(fanKey(fan, "Tg"), type, limits.minimum);
        fans_.push_back(limits);
    }
    setCelsius(50, 40);
    controller_.hook = [this](const SMCParam& request) { return answer(request); };
}

FaultyMac::~FaultyMac() {
    controller_.hook = {};
}

bool FaultyMac::isManual(int fan) const {
    if (controller_.has("FS! ") &&
        (static_cast<unsigned>(controller_.number("FS! ")) >> static_cast<unsigned>(fan) & 1U) != 0) {
        return true;
    }
    for (const char* suffix : {"Md", "md"}) {
        const std::string key = fanKey(fan, suffix);
        if (controller_.has(key) && controller_.number(key) != 0) {
            return true;
        }
    }
    return false;
}

double FaultyMac::target(int fan) const {
    return controller_.number(fanKey(fan, "Tg"));
}

std::string FaultyMac::description() const {
    constexpr const char* moods[] = {"willing", "refuses targets", "refuses writes", "silent"};
    std::string text = std::string("controller ") + moods[static_cast<std::size_t>(mood_)];
    for (const std::string& key : {std::string(processorSensor), std::string(otherSensor)}) {
        const auto value = celsius(key);
        text += ", " + key + (value ? " " + std::to_string(*value) : " unreadable");
    }
    text += hasVanished("FNum") ? ", FNum vanished" : "";
    for (const Fan& fan : fans_) {
        text += "; fan " + std::to_string(fan.index) + " (" + std::to_string(std::lround(fan.minimum)) +
                " to " + std::to_string(std::lround(fan.maximum)) + ") " +
                (isManual(fan.index) ? "manual at " + std::to_string(std::lround(target(fan.index)))
                                     : "automatic");
        for (const char* suffix : {"Ac", "Mx", "Tg"}) {
            text += hasVanished(fanKey(fan.index, suffix)) ? std::string(", ") + suffix + " vanished" : "";
        }
    }
    return text;
}

void FaultyMac::setMood(Mood mood) {
    mood_ = mood;
    // The transport treats an answer that never comes as a lost connection.
    controller_.diesAtRequest = mood == Mood::silent ? std::optional<std::size_t>(0) : std::nullopt;
}

void FaultyMac::vanish(const std::string& key) {
    vanished_.insert(SMC::fourCC(key));
}

void FaultyMac::restore() {
    vanished_.clear();
}

bool FaultyMac::hasVanished(const std::string& key) const {
    return vanished_.contains(SMC::fourCC(key));
}

bool FaultyMac::mayRefuseSpeeds() const {
    if (mood_ != Mood::willing) {
        return true;
    }
    for (const std::uint32_t code : vanished_) {
        if (isTarget(code)) {
            return true;
        }
    }
    return false;
}

bool FaultyMac::shows(int fan) const {
    return showsFanCount() && !hasVanished(fanKey(fan, "Ac"));
}

bool FaultyMac::canBeCooled(int fan) const {
    return shows(fan) && !hasVanished(fanKey(fan, "Mx"));
}

void FaultyMac::setCelsius(double processor, double other) {
    controller_.setNumber(processorSensor, "flt ", processor);
    controller_.setNumber(otherSensor, "flt ", other);
}

std::optional<double> FaultyMac::celsius(const std::string& sensor) const {
    if (mood_ == Mood::silent || hasVanished(sensor)) {
        return std::nullopt;
    }
    return controller_.number(sensor);
}

void FaultyMac::takeOver(int fan, double rpm) {
    if (controller_.has("Ftst")) {
        controller_.setNumber("Ftst", "ui8 ", 1);
    }
    setManual(fan, true);
    controller_.setNumber(fanKey(fan, "Tg"), controller_.at(fanKey(fan, "Tg")).type, rpm);
}

void FaultyMac::releaseFan(int fan) {
    setManual(fan, false);
}

void FaultyMac::sleepAndWake() {
    for (const Fan& fan : fans_) {
        setManual(fan.index, false);
    }
    if (controller_.has("Ftst")) {
        controller_.setNumber("Ftst", "ui8 ", 0);
    }
}

void FaultyMac::setManual(int fan, bool manual) {
    if (controller_.has("FS! ")) {
        const auto bit = 1U << static_cast<unsigned>(fan);
        const auto mask = static_cast<unsigned>(controller_.number("FS! "));
        controller_.setNumber("FS! ", "ui16", manual ? mask | bit : mask & ~bit);
    }
    for (const char* suffix : {"Md", "md"}) {
        if (controller_.has(fanKey(fan, suffix))) {
            controller_.setNumber(fanKey(fan, suffix), "ui8 ", manual ? 1 : 0);
        }
    }
}

bool FaultyMac::runHelper(const std::vector<std::string>& arguments) {
    SMC smc = controller_.open();
    if (arguments.size() == 3 && arguments[0] == "set") {
        return smc.setFanSpeed(std::atoi(arguments[1].c_str()), std::atof(arguments[2].c_str()));
    }
    if (arguments.size() == 2 && arguments[0] == "auto") {
        return smc.resetFan(std::atoi(arguments[1].c_str()));
    }
    return arguments.size() == 1 && arguments[0] == "auto" && smc.resetFans();
}

std::optional<ScriptedSMC::Reply> FaultyMac::answer(const SMCParam& request) const {
    if (request.data8 != SMCCommand::keyByIndex && vanished_.contains(request.key)) {
        return refusal(SMCResult::keyNotFound);
    }
    if (request.data8 == SMCCommand::writeKey &&
        (mood_ == Mood::refusesWrites || (mood_ == Mood::refusesTargets && isTarget(request.key)))) {
        return refusal(SMCResult::notWritable);
    }
    return std::nullopt;
}

} // namespace Fenwhirl
