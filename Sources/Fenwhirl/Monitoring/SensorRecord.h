// How cool and how hot each sensor was in the last ten minutes.
//
// A plain value without a clock or a thread of its own. Time is kept in spans of half a minute, so what it
// says covers ten minutes and at most half a minute more; a sensor takes some 200 bytes, however often it is
// read.

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

class SensorRecord {
public:
    // Notes the readings, and enters into each what its sensor read in the last ten minutes, this time
    // included. `now` is on a clock that counts sleep and never goes back. After a pause of more than ten
    // minutes the record starts anew. A reading that is no number is not noted.
    void add(QList<SensorState>& sensors, std::chrono::duration<double> now);

private:
    struct Range {
        float lowest = std::numeric_limits<float>::infinity();
        float highest = -std::numeric_limits<float>::infinity();
    };

    static constexpr std::int64_t spans = 21;

    void moveTo(std::int64_t span);

    QHash<QString, std::array<Range, spans>> sensors_; // each span in its place modulo their number
    std::optional<std::int64_t> span_;                 // the running one
    std::chrono::duration<double> lastAdded_{};
};
