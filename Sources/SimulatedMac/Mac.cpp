#include "SimulatedMac/Mac.h"

#include "SimulatedMac/ValueCoding.h"

#include <algorithm>
#include <span>
#include <utility>

namespace simulated {

namespace {

constexpr std::uint8_t badCommand = 0x82;

// Requests within this time of each other see the same state: a poll of a hundred keys costs one step of the
// physics.
constexpr double refreshSeconds = 0.1;

// After a longer pause everything has settled; what happened earlier no longer affects any temperature.
constexpr double longestHistorySeconds = 1800;

// The limit of the simulated power, as a multiple of the design power. No computer draws more.
constexpr double mostOverload = 3;

std::span<const std::uint8_t> valueBytes(const Fenwhirl::SMCParam& record, std::uint32_t size) {
    return {record.bytes.data(), std::min<std::size_t>(size, record.bytes.size())};
}

Reply answer(std::uint8_t result) {
    Reply reply;
    reply.record.result = result;
    return reply;
}

Reply keyInfo(const KeyStore& keys, FourCC code) {
    const Key* const key = keys.find(code);
    if (key == nullptr || key->vanished) {
        return answer(Fenwhirl::SMCResult::keyNotFound);
    }
    Reply reply;
    reply.record.key = code;
    reply.record.keyInfo.dataSize = key->record.size;
    reply.record.keyInfo.dataType = key->record.type;
    reply.record.keyInfo.dataAttributes = key->record.attributes;
    return reply;
}

Reply keyByIndex(const KeyStore& keys, std::uint32_t index) {
    if (index >= keys.count()) {
        return answer(Fenwhirl::SMCResult::indexRange);
    }
    const Key& key = keys.at(index);
    if (key.vanished) {
        return answer(Fenwhirl::SMCResult::keyNotFound);
    }
    Reply reply;
    reply.record.key = key.record.code;
    return reply;
}

Reply read(const KeyStore& keys, FourCC code, std::uint32_t size) {
    const Key* const key = keys.find(code);
    if (key == nullptr || key->vanished) {
        return answer(Fenwhirl::SMCResult::keyNotFound);
    }
    if (const std::uint8_t result = key->fault.value_or(key->record.readResult); result != 0) {
        return answer(result);
    }
    if (size != key->record.size) {
        return answer(Fenwhirl::SMCResult::sizeMismatch);
    }
    Reply reply;
    reply.record.key = code;
    reply.record.keyInfo.dataSize = size;
    reply.record.bytes = key->shown();
    return reply;
}

} // namespace

Mac::Mac(const MachineTable& table, Instant start)
    : name_(table.name)
    , keys_(table)
    , fans_(keys_)
    , model_(makeModel(table))
    , state_(recordedState(model_, table))
    , heatSource_(std::make_unique<ConstantHeat>(model_.recorded))
    , caughtUpSeconds_(start.steadySeconds) {
    inputs_.heat = model_.recorded;
    readFanInputs();
}

Reply Mac::handle(const Fenwhirl::SMCParam& request, const Peer& peer, Instant now) {
    if (now.steadySeconds - caughtUpSeconds_ >= refreshSeconds) {
        catchUp(now);
    }
    switch (request.data8) {
    case Fenwhirl::SMCCommand::readKey:
        return read(keys_, request.key, request.keyInfo.dataSize);
    case Fenwhirl::SMCCommand::writeKey:
        return write(request, peer, now);
    case Fenwhirl::SMCCommand::keyByIndex:
        return keyByIndex(keys_, request.data32);
    case Fenwhirl::SMCCommand::keyInfo:
        return keyInfo(keys_, request.key);
    default:
        return answer(badCommand);
    }
}

Reply Mac::write(const Fenwhirl::SMCParam& request, const Peer& peer, Instant now) {
    Key* const key = keys_.find(request.key);
    const bool exists = key != nullptr && !key->vanished;
    const std::uint32_t size = request.keyInfo.dataSize;
    Reply reply;
    // The kernel refuses first, before the SMC sees the request.
    if (peer.user != 0) {
        reply.kernelReturn = Fenwhirl::KernelReturn::notPrivileged;
    } else if (!exists) {
        reply.record.result = Fenwhirl::SMCResult::keyNotFound;
    } else if (const auto refusal = key->refusal ? key->refusal : keys_.refusalOfAll) {
        reply.kernelReturn = refusal->kernelReturn;
        reply.record.result = refusal->result;
    } else if ((key->record.attributes & attributeWritable) == 0) {
        reply.record.result = Fenwhirl::SMCResult::notWritable;
    } else if (size != key->record.size) {
        reply.record.result = Fenwhirl::SMCResult::sizeMismatch;
    } else {
        reply.record.result =
            fans_.checkWrite(keys_, request.key, valueBytes(request, size), now.steadySeconds);
    }

    WriteEntry entry{.wallSeconds = now.wallSeconds,
                     .simulatedSeconds = state_.seconds,
                     .peer = peer,
                     .code = request.key,
                     .type = exists ? key->record.type : 0,
                     .size = size,
                     .bytes = request.bytes,
                     .kernelReturn = reply.kernelReturn,
                     .result = reply.record.result};
    if (entry.granted()) {
        catchUp(now); // the time before the write still has the old settings
        const auto bytes = valueBytes(request, size);
        std::copy(bytes.begin(), bytes.end(), key->record.bytes.begin());
        fans_.wrote(keys_, request.key, now.steadySeconds);
        readFanInputs();
    }
    entry.simulatedSeconds = state_.seconds;
    const WriteEntry& logged = writes_.add(entry);
    if (onWrite) {
        onWrite(logged);
    }
    return reply;
}

void Mac::catchUp(Instant now) {
    const double passed = std::max(0.0, now.steadySeconds - caughtUpSeconds_);
    caughtUpSeconds_ = std::max(caughtUpSeconds_, now.steadySeconds);
    const double seconds = passed * speed_;
    if (seconds > longestHistorySeconds) {
        state_.seconds += seconds - longestHistorySeconds;
    }
    move(std::min(seconds, longestHistorySeconds), now.steadySeconds);
}

void Mac::skip(double seconds, Instant now) {
    catchUp(now);
    move(seconds, now.steadySeconds);
}

void Mac::move(double seconds, double steadySeconds) {
    // Heat varies with time, so a long stretch is simulated in pieces short enough to follow a recorded
    // course.
    constexpr double longestPieceSeconds = 1;
    readFanInputs();
    const MachinePowers& powers = model_.powers;
    const double mostGraphics = mostOverload * std::max(powers.graphicsWatts, powers.processorWatts / 4);
    double left = seconds;
    while (left > 0) {
        const double piece = std::min(left, longestPieceSeconds);
        const Heat wanted = heatSource_->heatAt(state_.seconds, steadySeconds);
        inputs_.heat = {.processorWatts =
                            std::min(wanted.processorWatts, mostOverload * powers.processorWatts),
                        .graphicsWatts = std::min(wanted.graphicsWatts, mostGraphics)};
        advance(state_, model_, inputs_, piece);
        left -= piece;
    }
    showState();
}

void Mac::readFanInputs() {
    for (unsigned fan = 0; fan < fans_.count(); ++fan) {
        FanInput& input = inputs_.fans[fan];
        input.limits = fans_.limits(keys_, fan);
        input.manualTargetRPM = fans_.isManual(keys_, fan) ? keys_.number(fanKey(fan, "Tg")) : std::nullopt;
    }
}

void Mac::showState() {
    for (const Sensor& sensor : model_.sensors) {
        Key& key = keys_.at(sensor.keyIndex);
        (void)encodeValue(key.record.type,
                          sensorCelsius(sensor, model_.reference, state_.thermal, state_.seconds),
                          key.record.bytes);
    }
    for (unsigned fan = 0; fan < state_.fanCount; ++fan) {
        const FanState& one = state_.fans[fan];
        keys_.setNumber(fanKey(fan, "Ac"), shownRPM(fan, one.rpm, state_.seconds));
        if (!inputs_.fans[fan].manualTargetRPM) {
            keys_.setNumber(fanKey(fan, "Tg"), one.targetRPM);
        }
    }
}

void Mac::fallAsleep(Instant now) {
    catchUp(now);
    inputs_.asleep = true;
}

void Mac::wakeUp(Instant now) {
    catchUp(now);
    inputs_.asleep = false;
    fans_.forget(keys_);
    move(0, now.steadySeconds);
}

void Mac::defineKey(const KeyRecord& record) {
    keys_.define(record);
    fans_.learn(keys_);
    state_.fanCount = fans_.count();
    readFanInputs();
}

void Mac::setHeatSource(std::unique_ptr<HeatSource> source, Instant now) {
    catchUp(now);
    heatSource_ = std::move(source);
    inputs_.heat = heatSource_->heatAt(state_.seconds, now.steadySeconds);
}

void Mac::setSpeed(double speed, Instant now) {
    catchUp(now);
    speed_ = std::max(0.0, speed);
}

} // namespace simulated
