// An independent, deliberately simple model of what a poll must do, to compare with the real decisions over
// long random lives.
//
// It is written from the rules as one long function over one record per fan, and shares no code with the
// decisions. The file also has a source of random machines for both tests and fuzzing. Model and decisions
// get the same readings, settings, clock and helper results.

#pragma once

#include "Fenwhirl/Monitoring/FanSetting.h"
#include "FenwhirlCore/SMC.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace Fenwhirl {

// Draws numbers from bytes. An exhausted source yields zeros.
class ByteSource {
public:
    explicit ByteSource(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}

    [[nodiscard]] bool isEmpty() const { return position_ >= bytes_.size(); }

    std::uint8_t byte() { return isEmpty() ? std::uint8_t{0} : bytes_[position_++]; }

    bool oneIn(unsigned count) { return byte() % count == 0; }

private:
    std::span<const std::uint8_t> bytes_;
    std::size_t position_ = 0;
};

// The input of one poll.
struct PollCircumstances {
    std::vector<FanReading> fans;
    std::vector<TemperatureReading> temperatures;
    FanSettings settings;
    bool protect = true;
    double protectAt = 90;
    bool helperInstalled = true;
    bool helperSucceeds = true;
    double nowSeconds = 0;
};

class PollModel {
public:
    using Commands = std::vector<std::vector<std::string>>;

    struct Outcome {
        Commands commands;
        bool needsHelper = false;
        std::string problem; // "", "noTemperature", "refused"
        std::optional<double> primary;
        bool boosting = false;
    };

    Outcome poll(const PollCircumstances& c) {
        Outcome outcome;
        const double primary = mainTemperature(c.temperatures);
        const bool hasPrimary = !c.temperatures.empty();
        if (hasPrimary) {
            outcome.primary = primary;
        }
        if (!hasPrimary || !c.protect || primary < c.protectAt - 5.0) {
            boosting_ = false;
        } else if (primary >= c.protectAt) {
            boosting_ = true;
        }
        outcome.boosting = boosting_;
        const bool forbidden = !hasPrimary || primary >= 92.0;
        for (const FanReading& fan : c.fans) {
            Fan& known = fans_[fan.index];
            double wanted = automatic;
            const FanSetting setting =
                c.settings.contains(fan.index) ? c.settings.at(fan.index) : FanSetting{};
            if (hasPrimary && primary >= 92.0) {
                wanted = automatic;
            } else if (boosting_) {
                wanted = std::trunc(fan.maxRPM);
            } else if (setting.mode == FanModeKind::constant) {
                wanted = constantSpeed(setting.constantRPM, fan);
            } else if (setting.mode == FanModeKind::sensor) {
                wanted = curveSpeed(setting, fan, c.temperatures, primary);
            }
            if (!(wanted > -0x1p63 && wanted < 0x1p63)) {
                wanted = automatic;
            }
            const bool wantsManual = !std::isnan(wanted);
            if (wantsManual && !hasPrimary) {
                outcome.problem = "noTemperature";
                wanted = automatic;
            }
            if (std::isnan(wanted)) {
                giveBack(outcome, c, fan.index, known, forbidden);
                continue;
            }
            outcome.needsHelper = true;
            const bool small = known.isManual && std::abs(wanted - known.rpm) < 100;
            if (!c.helperInstalled || (small && c.nowSeconds - known.atSeconds <= 10)) {
                continue;
            }
            send(outcome, c,
                 {"set", std::to_string(fan.index), std::to_string(static_cast<std::int64_t>(wanted))});
            known = {true, wanted, c.nowSeconds, false};
        }
        for (auto& [index, known] : fans_) {
            bool isRead = false;
            for (const FanReading& fan : c.fans) {
                isRead = isRead || fan.index == index;
            }
            const bool isUsersChoice =
                c.settings.contains(index) && c.settings.at(index).mode != FanModeKind::automatic;
            if (!isRead && (forbidden || boosting_ || !known.isManual || !isUsersChoice)) {
                giveBack(outcome, c, index, known, forbidden);
            }
        }
        return outcome;
    }

private:
    static constexpr double automatic = std::numeric_limits<double>::quiet_NaN();

    struct Fan {
        bool isManual = false;
        double rpm = 0;
        double atSeconds = 0;
        bool handBackWasRefused = false;
    };

    // Hands a driven fan back. A refused hand-back is repeated after 10 seconds, or at every poll while no
    // fan may be driven.
    static void giveBack(Outcome& outcome, const PollCircumstances& c, int index, Fan& known,
                         bool forbidden) {
        const bool isDue = known.isManual ||
                           (known.handBackWasRefused && (forbidden || c.nowSeconds - known.atSeconds >= 10));
        if (isDue && c.helperInstalled) {
            send(outcome, c, {"auto", std::to_string(index)});
            known = {false, 0, c.nowSeconds, !c.helperSucceeds};
        }
    }

    static void send(Outcome& outcome, const PollCircumstances& c, std::vector<std::string> command) {
        outcome.commands.push_back(std::move(command));
        if (!c.helperSucceeds) {
            outcome.problem = "refused";
        }
    }

    static double constantSpeed(double rpm, const FanReading& fan) {
        if (std::isnan(rpm) || std::isnan(fan.minRPM) || std::isnan(fan.maxRPM)) {
            return automatic;
        }
        return std::trunc(std::fmin(fan.maxRPM, std::fmax(rpm, fan.minRPM)));
    }

    static double curveSpeed(const FanSetting& setting, const FanReading& fan,
                             const std::vector<TemperatureReading>& temperatures, double primary) {
        double celsius = temperatures.empty() ? 0 : primary;
        for (auto reading = temperatures.rbegin(); reading != temperatures.rend(); ++reading) {
            if (!setting.sensorKey.empty() && reading->key == setting.sensorKey) {
                celsius = reading->celsius;
            }
        }
        double span = setting.maxTemp - setting.startTemp;
        span = span < 1 ? 1 : span;
        double fraction = (celsius - setting.startTemp) / span;
        fraction = fraction > 1 ? 1 : fraction < 0 ? 0 : fraction;
        return std::round((fan.minRPM + (fan.maxRPM - fan.minRPM) * fraction) / 50) * 50;
    }

    static double mainTemperature(const std::vector<TemperatureReading>& temperatures) {
        for (const char* key : {"TCXC", "TC0P", "TC0E", "TC0F", "TC0D", "TC0H", "Tp01", "Tp05", "Tp09",
                                "Tp0D", "Tp0T", "Tp0b"}) {
            for (const TemperatureReading& reading : temperatures) {
                if (reading.key == key) {
                    return reading.celsius;
                }
            }
        }
        double hottestProcessor = -1e9;
        double hottest = -1e9;
        for (const TemperatureReading& reading : temperatures) {
            const std::string prefix = reading.key.substr(0, 2);
            hottest = std::fmax(hottest, reading.celsius);
            if (prefix == "TC" || prefix == "Tp" || prefix == "Te" || prefix == "Tf") {
                hottestProcessor = std::fmax(hottestProcessor, reading.celsius);
            }
        }
        return hottestProcessor > -1e9 ? hottestProcessor : hottest;
    }

    std::map<int, Fan> fans_;
    bool boosting_ = false;
};

// Derives the next poll of a random life: mostly small steps from the previous one, occasionally something
// odd.
inline void nextCircumstances(PollCircumstances& c, ByteSource& source) {
    static constexpr double oddSpeeds[] = {std::numeric_limits<double>::quiet_NaN(),
                                           std::numeric_limits<double>::infinity(),
                                           -std::numeric_limits<double>::infinity(),
                                           0,
                                           -1,
                                           3e38,
                                           9.3e18,
                                           1e300};
    static const std::string keys[] = {"TC0P", "TCXC", "TC7C", "TG0P", "Te05", "TB0T"};
    const auto speed = [&](double usual) {
        return source.oneIn(40) ? oddSpeeds[source.byte() % std::size(oddSpeeds)] : usual;
    };

    c.nowSeconds += source.oneIn(8) ? source.byte() : 2;
    if (source.oneIn(16)) {
        c.fans.clear();
        for (int index = 0, count = source.byte() % 5; index < count; ++index) {
            if (source.oneIn(4)) {
                continue; // leaves a gap
            }
            const double minRPM = speed(source.byte() * 10.0);
            c.fans.push_back({index, 2000, minRPM, speed(source.byte() * 30.0), 2000});
        }
    }
    if (source.oneIn(20)) {
        c.temperatures.clear();
        for (int i = 0, count = source.byte() % 4; i < count; ++i) {
            c.temperatures.push_back({keys[source.byte() % std::size(keys)], 30.0 + source.byte() % 80});
        }
    }
    for (TemperatureReading& reading : c.temperatures) {
        const double change = (source.byte() % 9 - 4) * 0.5;
        reading.celsius = std::fmin(129, std::fmax(1, reading.celsius + change));
    }
    if (source.oneIn(10)) {
        FanSetting& setting = c.settings[source.byte() % 5];
        setting.mode = allFanModeKinds[source.byte() % 3U];
        setting.constantRPM = speed(source.byte() * 25.0);
        setting.sensorKey = source.oneIn(2) ? keys[source.byte() % std::size(keys)] : "";
        setting.startTemp = speed(20.0 + source.byte() % 80);
        setting.maxTemp = speed(20.0 + source.byte() % 80);
    }
    if (source.oneIn(30)) {
        c.protect = source.oneIn(2);
        c.protectAt = 60.0 + source.byte() % 50;
    }
    c.helperInstalled = !source.oneIn(25);
    c.helperSucceeds = !source.oneIn(8);
}

} // namespace Fenwhirl
