// The heat sources: how many watts the processor and the graphics ask for at a given moment.

#pragma once

#include "SimulatedMac/HostLoad.h"
#include "SimulatedMac/MacModel.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace simulated {

class HeatSource {
public:
    HeatSource() = default;
    HeatSource(const HeatSource&) = delete;
    HeatSource& operator=(const HeatSource&) = delete;
    HeatSource(HeatSource&&) = delete;
    HeatSource& operator=(HeatSource&&) = delete;
    virtual ~HeatSource() = default;

    // The heat at this simulated time. `steadySeconds` is the real clock, for sources that follow the real
    // world. Neither ever runs backwards.
    [[nodiscard]] virtual Heat heatAt(double simulatedSeconds, double steadySeconds) = 0;

    // The source as one word for the state line, for example "host".
    [[nodiscard]] virtual std::string name() const = 0;
};

// A constant power.
class ConstantHeat final : public HeatSource {
public:
    explicit ConstantHeat(Heat heat) : heat_(heat) {}

    [[nodiscard]] Heat heatAt(double simulatedSeconds, double steadySeconds) override;

    [[nodiscard]] std::string name() const override { return "constant"; }

private:
    Heat heat_;
};

// Follows the processor load of the computer that runs the simulation, from idle to full power.
class HostHeat final : public HeatSource {
public:
    HostHeat(Heat idle, Heat full) : idle_(idle), full_(full) {}

    [[nodiscard]] Heat heatAt(double simulatedSeconds, double steadySeconds) override;

    [[nodiscard]] std::string name() const override { return "host"; }

private:
    Heat idle_;
    Heat full_;
    HostLoad load_;
    double share_ = 0;
    double sampledSeconds_ = -1;
};

// The power of a machine at a processor load of 0…1.
[[nodiscard]] Heat heatOfLoad(double load, const Heat& idle, const Heat& full);

// One point of a recorded course.
struct CoursePoint {
    double seconds = 0;
    Heat heat;
};

// Parses a course: one point per line, "SECONDS WATTS [GRAPHICS-WATTS]", with times that rise from line to
// line. Empty lines and lines that begin with "#" are ignored. Returns no points when the text is not a
// course; `error` says why.
[[nodiscard]] std::vector<CoursePoint> parseCourse(std::string_view text, std::string& error);

// A recorded course: straight lines between its points, repeated from the moment when it was chosen.
class CourseHeat final : public HeatSource {
public:
    // `points` must not be empty.
    CourseHeat(std::vector<CoursePoint> points, double startSeconds);
    [[nodiscard]] Heat heatAt(double simulatedSeconds, double steadySeconds) override;

    [[nodiscard]] std::string name() const override { return "course"; }

private:
    std::vector<CoursePoint> points_;
    double startSeconds_;
};

} // namespace simulated
