// The lowest and highest value of each sensor in the last ten minutes.
//
// A plain value without a clock or thread of its own. Time is divided into spans of half a minute, so
// the result covers ten minutes and at most half a minute more. A sensor takes some 200 bytes,
// however often it is read.

#pragma once

#include "Fenwhirl/Monitoring/MonitorStates.h"

#include <QHash>
#include <QList>
#include <QString>

#include <array>
#include <chrono>
#include <cstdint>
#include <limits>
#include <optional>

namespace Fenwhirl {

class SensorRecord {
public:
    // Records the readings, and fills in the lowest and highest value of each sensor in the last ten minutes,
    // including this reading. `now` is on a clock that includes sleep and never goes back. After a pause of
    // more than ten minutes the record starts over. A reading that is not finite is not recorded.
    void add(QList<SensorState>& sensors, std::chrono::duration<double> now);

private:
    struct Range {
        float lowest = std::numeric_limits<float>::infinity();
        float highest = -std::numeric_limits<float>::infinity();
    };

    static constexpr std::int64_t spans = 21;

    void moveTo(std::int64_t span);

    QHash<QString, std::array<Range, spans>> sensors_; // ring buffers: a span is at its number modulo `spans`
    std::optional<std::int64_t> span_;                 // the current one
    std::chrono::duration<double> lastAdded_{};
};

} // namespace Fenwhirl
