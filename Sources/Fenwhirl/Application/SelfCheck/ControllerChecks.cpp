#include "Fenwhirl/Application/SelfCheck/ControllerChecks.h"

#include "Fenwhirl/Monitoring/SensorSummary.h"
#include "FenwhirlCore/NumberText.h"

#include <QStringList>

#include <algorithm>
#include <cmath>
#include <utility>

namespace Fenwhirl {

namespace {

using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr int repetitions = 20;
constexpr std::string_view keyCountKey = "#KEY"; // every controller has it

SMCParam request(std::uint8_t command, std::string_view key, std::uint32_t size = 0) {
    SMCParam param{};
    param.data8 = command;
    param.key = SMC::fourCC(key);
    param.keyInfo.dataSize = size;
    return param;
}

QString resultText(std::uint8_t result) {
    return QStringLiteral("the controller answered 0x%1").arg(result, 2, 16, QLatin1Char('0'));
}

QString whole(double value) {
    return QString::number(value, 'f', 0);
}

} // namespace

std::optional<int> usableFanCount(SMC& smc) {
    constexpr std::int64_t most = 1000; // a few, or nonsense
    const auto count = NumberText::exactWhole(smc.readValue("FNum").value_or(0));
    return count && *count >= 0 && *count <= most ? std::optional(static_cast<int>(*count)) : std::nullopt;
}

ControllerChecks::ControllerChecks(Open open, bool isRoot) : open_(std::move(open)), isRoot_(isRoot) {}

std::vector<SelfCheck> ControllerChecks::checks() {
    return {{QStringLiteral("SMC opened"), [this] { return opened(); }},
            connected(QStringLiteral("SMC key info"),
                      [this] { return timed(request(SMCCommand::keyInfo, keyCountKey)); }),
            connected(QStringLiteral("SMC read key"),
                      [this] {
                          constexpr std::uint32_t keyCountSize = 4;
                          return timed(request(SMCCommand::readKey, keyCountKey, keyCountSize));
                      }),
            connected(QStringLiteral("SMC key by index"),
                      [this] { return timed(request(SMCCommand::keyByIndex, {})); }),
            connected(QStringLiteral("SMC write refused"), [this] { return refusedWrite(); }),
            connected(QStringLiteral("SMC keys"), [this] { return keys(); }),
            connected(QStringLiteral("temperatures"), [this] { return temperatures(); }),
            connected(QStringLiteral("fans"), [this] { return fans(); })};
}

SelfCheck ControllerChecks::connected(const QString& name, std::function<CheckResult()> run) const {
    return {name, [this, run = std::move(run)] {
                return smc_ ? run() : CheckResult::skip(QStringLiteral("the SMC could not be opened"));
            }};
}

CheckResult ControllerChecks::opened() {
    const auto begin = Clock::now();
    transport_ = open_();
    const Milliseconds time = Clock::now() - begin;
    auto second = transport_ ? open_() : nullptr;
    if (!second) {
        return CheckResult::fail(QStringLiteral("no controller was found, or it refused the connection"));
    }
    smc_ = std::make_unique<SMC>(std::move(second));
    return CheckResult::pass(millisecondsText(time));
}

CheckResult ControllerChecks::timed(const SMCParam& request) {
    std::vector<Milliseconds> times;
    for (int i = 0; i < repetitions; ++i) {
        const auto begin = Clock::now();
        const auto answer = transport_->call(request);
        times.emplace_back(Clock::now() - begin);
        if (!answer) {
            return CheckResult::fail(QStringLiteral("no answer after ") + millisecondsText(times.back()));
        }
        if (answer->result != SMCResult::success) {
            return CheckResult::fail(resultText(answer->result));
        }
    }
    std::ranges::sort(times);
    return CheckResult::pass(QStringLiteral("%1 (median of %2; at most %3)")
                                 .arg(millisecondsText(times[times.size() / 2]))
                                 .arg(repetitions)
                                 .arg(millisecondsText(times.back())));
}

CheckResult ControllerChecks::refusedWrite() {
    if (isRoot_) {
        return CheckResult::skip(QStringLiteral("this is root, who may write"));
    }
    std::optional<std::string> key = smc_->fanModeKey(0);
    if (!key && smc_->hasKey("FS! ")) {
        key = "FS! ";
    }
    const auto value = key ? smc_->readBytes(*key) : std::nullopt;
    if (!value) {
        return CheckResult::skip(QStringLiteral("there is no fan's mode to write"));
    }
    SMCParam write = request(SMCCommand::writeKey, *key, static_cast<std::uint32_t>(value->bytes.size()));
    std::ranges::copy(value->bytes, write.bytes.begin());
    const auto begin = Clock::now();
    const auto answer = transport_->call(write);
    const Milliseconds time = Clock::now() - begin;
    const QString name = QString::fromStdString(*key);
    if (transport_->isDead()) {
        return CheckResult::fail(QStringLiteral("the connection died at a write of ") + name);
    }
    if (answer && answer->result == SMCResult::success) {
        return CheckResult::fail(
            QStringLiteral("a write of %1 was accepted without root's rights").arg(name));
    }
    return CheckResult::pass(QStringLiteral("%1, %2").arg(name, millisecondsText(time)));
}

CheckResult ControllerChecks::keys() {
    const auto begin = Clock::now();
    const std::size_t found = smc_->allKeys().size();
    const Milliseconds time = Clock::now() - begin;
    const double promised = smc_->readValue(keyCountKey).value_or(0);
    const QString text =
        QStringLiteral("%1 of %2 in %3").arg(QString::number(found), whole(promised), millisecondsText(time));
    return found > 0 ? CheckResult::pass(text) : CheckResult::fail(text);
}

CheckResult ControllerChecks::temperatures() {
    const auto begin = Clock::now();
    temperatureKeys_ = smc_->discoverTemperatureKeys();
    const std::vector<TemperatureReading> readings = smc_->readTemperatures(temperatureKeys_);
    const Milliseconds time = Clock::now() - begin;
    const auto main = primaryTemperature(readings);
    if (!main) {
        return CheckResult::fail(QStringLiteral("none can be read: no fan will be driven by hand"));
    }
    return CheckResult::pass(
        QStringLiteral("%1, the main one %2 °C, in %3")
            .arg(QString::number(readings.size()), QString::number(*main, 'f', 1), millisecondsText(time)));
}

CheckResult ControllerChecks::fans() {
    const auto count = usableFanCount(*smc_);
    if (!count) {
        return CheckResult::fail(QStringLiteral("their number is no usable number"));
    }
    if (*count == 0) {
        return CheckResult::pass(QStringLiteral("this Mac has none"));
    }
    const auto begin = Clock::now();
    const std::vector<FanReading> readings = smc_->readFans();
    const std::map<int, bool> modes = smc_->fanModes();
    const Milliseconds time = Clock::now() - begin;
    QStringList texts;
    for (const FanReading& fan : readings) {
        const auto mode = modes.find(fan.index);
        texts.append(QStringLiteral("fan %1: %2 rpm of %3 to %4, %5")
                         .arg(QString::number(fan.index), whole(fan.rpm), whole(fan.minRPM),
                              fan.isMaximumKnown ? whole(fan.maxRPM) : QStringLiteral("an unknown maximum"),
                              mode == modes.end() ? QStringLiteral("mode unknown")
                              : mode->second      ? QStringLiteral("manual")
                                                  : QStringLiteral("automatic")));
    }
    texts.append(QStringLiteral("in ") + millisecondsText(time));
    const QString text = texts.join(QStringLiteral("; "));
    return readings.size() == static_cast<std::size_t>(*count)
               ? CheckResult::pass(text)
               : CheckResult::fail(QStringLiteral("%1 of %2 readable; ").arg(readings.size()).arg(*count) +
                                   text);
}

} // namespace Fenwhirl
