// A whole simulated Mac: the SMC that answers records, the firmware behind it and the machine around it.
//
// The simulation has no timer. Every caller passes the present time, and the machine catches up with it
// first, so an idle simulation costs nothing. Simulated time is `speed` times real time; a comment says so
// where real time is meant. Single-threaded; the object owns everything but the clock.

#pragma once

#include "FenwhirlCore/SMCRecord.h"
#include "SimulatedMac/FanFirmware.h"
#include "SimulatedMac/HeatSource.h"
#include "SimulatedMac/KeyStore.h"
#include "SimulatedMac/MacModel.h"
#include "SimulatedMac/MachineTable.h"
#include "SimulatedMac/WriteLog.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

namespace simulated {

// A reply as it is sent over the socket: the kernel's return code, then the output record.
struct Reply {
    std::uint32_t kernelReturn = 0;
    Fenwhirl::SMCParam record{};
};

static_assert(sizeof(Reply) == 84);

class Mac {
public:
    // `start` is the present moment. The machine begins in the state of its recording, with the constant heat
    // that keeps it there until another source is set.
    Mac(const MachineTable& table, Instant start);

    // Answers one request. `peer` decides whether a write is allowed: only effective user id 0 may write.
    [[nodiscard]] Reply handle(const Fenwhirl::SMCParam& request, const Peer& peer, Instant now);

    // Advances the machine to `now` and updates its keys. Cheap when hardly any time has passed.
    void catchUp(Instant now);

    // Advances simulated time by `seconds` at once.
    void skip(double seconds, Instant now);

    // Sleep stops heat and fans. Waking resets the firmware: it loses every manual mode, the mask and the
    // unlock. Waking an awake machine has the same effect as a very short sleep.
    void fallAsleep(Instant now);
    void wakeUp(Instant now);

    // Adds or replaces a key, and updates the number of fans.
    void defineKey(const KeyRecord& record);

    void setHeatSource(std::unique_ptr<HeatSource> source, Instant now);
    // 0 stops simulated time; negative values are treated as 0.
    void setSpeed(double speed, Instant now);

    [[nodiscard]] const std::string& machineName() const { return name_; }

    [[nodiscard]] const MacModel& model() const { return model_; }

    [[nodiscard]] const MacState& state() const { return state_; }

    [[nodiscard]] const Heat& heat() const { return inputs_.heat; }

    [[nodiscard]] const HeatSource& heatSource() const { return *heatSource_; }

    [[nodiscard]] bool isAsleep() const { return inputs_.asleep; }

    [[nodiscard]] double speed() const { return speed_; }

    [[nodiscard]] KeyStore& keys() { return keys_; }

    [[nodiscard]] const KeyStore& keys() const { return keys_; }

    [[nodiscard]] FanFirmware& fans() { return fans_; }

    [[nodiscard]] const FanFirmware& fans() const { return fans_; }

    [[nodiscard]] const WriteLog& writes() const { return writes_; }

    // Called after every write has been logged; may be empty.
    std::function<void(const WriteEntry&)> onWrite;

private:
    [[nodiscard]] Reply write(const Fenwhirl::SMCParam& request, const Peer& peer, Instant now);
    void move(double seconds, double steadySeconds);
    void readFanInputs();
    void showState();

    std::string name_;
    KeyStore keys_;
    FanFirmware fans_;
    MacModel model_;
    MacState state_;
    MacInputs inputs_;
    std::unique_ptr<HeatSource> heatSource_;
    WriteLog writes_;
    double speed_ = 1;
    double caughtUpSeconds_; // steady clock
};

} // namespace simulated
