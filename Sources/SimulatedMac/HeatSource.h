// Where the heat comes from: how many watts processor and graphics ask for at a moment.

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

    // The heat at this simulated time; `steadySeconds` is the real clock, for sources that follow the real
    // world. Both never run backwards.
    [[nodiscard]] virtual Heat heatAt(double simulatedSeconds, double steadySeconds) = 0;

    // One word for the state line, for example "host".
    [[nodiscard]] virtual std::string name() const = 0;
};

// Always the same.
class ConstantHeat final : public HeatSource {
public:
    explicit ConstantHeat(Heat heat) : heat_(heat) {}

    [[nodiscard]] Heat heatAt(double simulatedSeconds, double steadySeconds) override;

    [[nodiscard]] std::string name() const override { return "constant"; }

private:
    Heat heat_;
};

// The processor load of the computer that the simulation runs on, from idle to full power.
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

// Reads a course: one point a line, "SECONDS WATTS [GRAPHICS-WATTS]", times rising from line to line; empty
// lines and those that begin with "#" do not count. Empty when the text is no course; `error` says why.
[[nodiscard]] std::vector<CoursePoint> parseCourse(std::string_view text, std::string& error);

// A recorded course: straight lines between its points, from the moment it was chosen, over and over.
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
