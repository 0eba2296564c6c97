#include "FenwhirlCore/Platform/DriverFanWriter.h"

#include <algorithm>
#include <cerrno>
#include <charconv>

namespace Fenwhirl {

namespace {

constexpr std::string_view stateFolder = "/run/fenwhirl";
constexpr const char* allowingFile = "/etc/fenwhirl/allow-fan-control";
constexpr const char* bootIdFile = "/proc/sys/kernel/random/boot_id";
constexpr std::int64_t toleratedDriftRPM = 50;
constexpr std::int64_t toleratedSleepMilliseconds = 1000;

std::string_view firstLine(std::string_view text) {
    return text.substr(0, text.find('\n'));
}

std::optional<std::int64_t> number(std::string_view text) {
    std::int64_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size()) {
        return std::nullopt;
    }
    return value;
}

// The state that the last helper run saved for a fan: "boot-id sleep-offset rpm".
struct FanState {
    std::string_view bootId;
    std::int64_t sleepOffsetMilliseconds;
    std::int64_t rpm;
};

std::optional<FanState> parseState(std::string_view text) {
    text = firstLine(text);
    const std::size_t first = text.find(' ');
    const std::size_t second = first == std::string_view::npos ? first : text.find(' ', first + 1);
    if (second == std::string_view::npos) {
        return std::nullopt;
    }
    const std::optional<std::int64_t> offset = number(text.substr(first + 1, second - first - 1));
    const std::optional<std::int64_t> rpm = number(text.substr(second + 1));
    // No helper run saves greater values; the limit keeps differences of two values from overflowing.
    constexpr std::int64_t most = std::int64_t{1} << 53U;
    if (!offset || *offset < 0 || *offset > most || !rpm || *rpm < 1 || *rpm > most) {
        return std::nullopt;
    }
    return FanState{text.substr(0, first), *offset, *rpm};
}

} // namespace

DriverFanWriter::DriverFanWriter(DriverFiles& files, std::string folder, int channel, FanControlStyle style)
    : files_(files)
    , folder_(std::move(folder))
    , channel_(channel)
    , style_(style) {}

int DriverFanWriter::setManual(bool manual) {
    switch (style_) {
    case FanControlStyle::manualAndOutput:
        return write(file("fan", "_manual"), manual ? 1 : 0);
    case FanControlStyle::targetAndEnable:
        return write(file("fan", "_enable"), manual ? 0 : 1);
    case FanControlStyle::targetAndPwm:
        return write(file("pwm", "_enable"), manual ? 1 : 2);
    case FanControlStyle::targetOnly:
        if (!manual) {
            return handBackByTarget();
        }
        // The driver switches to manual with the first target; all that can be checked beforehand is the
        // permission to write one.
        return hasUsableLimits() ? probe(file("fan", "_target")) : EINVAL;
    case FanControlStyle::readOnly:
        break;
    }
    return EACCES;
}

int DriverFanWriter::setTarget(std::int64_t rpm) {
    if (rpm < 1) {
        return EINVAL;
    }
    switch (style_) {
    case FanControlStyle::manualAndOutput:
        return write(file("fan", "_output"), rpm);
    case FanControlStyle::targetAndEnable:
    case FanControlStyle::targetAndPwm:
        return write(file("fan", "_target"), rpm);
    case FanControlStyle::targetOnly: {
        if (!hasUsableLimits()) {
            return EINVAL;
        }
        const std::string target = file("fan", "_target");
        if (mustRearm(read(target).value_or(0))) {
            if (const int error = write(target, 0); error != 0) {
                return error;
            }
        }
        const int error = write(target, rpm);
        if (error == 0) {
            remember(rpm);
        }
        return error;
    }
    case FanControlStyle::readOnly:
        break;
    }
    return EACCES;
}

std::string DriverFanWriter::file(std::string_view prefix, std::string_view suffix) const {
    return folder_ + '/' + std::string(prefix) + std::to_string(channel_) + std::string(suffix);
}

int DriverFanWriter::write(const std::string& path, std::int64_t value) {
    const std::optional<DriverFiles::Status> status = files_.status(path);
    if (!status) {
        return ENOENT;
    }
    if (!status->isWritable) {
        return EACCES;
    }
    const int descriptor = files_.open(path, DriverFiles::Access::write);
    if (descriptor < 0) {
        return -descriptor;
    }
    const std::string text = std::to_string(value) + '\n';
    const ssize_t written = files_.writeAt0(descriptor, text);
    files_.close(descriptor);
    if (written < 0) {
        return static_cast<int>(-written);
    }
    return written == static_cast<ssize_t>(text.size()) ? 0 : EIO;
}

int DriverFanWriter::probe(const std::string& path) {
    const std::optional<DriverFiles::Status> status = files_.status(path);
    if (!status) {
        return ENOENT;
    }
    if (!status->isWritable) {
        return EACCES;
    }
    const int descriptor = files_.open(path, DriverFiles::Access::write);
    if (descriptor < 0) {
        return -descriptor;
    }
    files_.close(descriptor);
    return 0;
}

std::optional<std::int64_t> DriverFanWriter::read(const std::string& path) {
    const std::optional<std::string> text = files_.readText(path);
    return text ? number(firstLine(*text)) : std::nullopt;
}

bool DriverFanWriter::hasUsableLimits() {
    const std::optional<std::int64_t> lowest = read(file("fan", "_min"));
    const std::optional<std::int64_t> highest = read(file("fan", "_max"));
    return lowest && highest && *lowest >= 1 && *lowest <= *highest;
}

// The driver hands a fan back only if it remembers having taken it, and it forgets that when it is reloaded.
// Writing a target within the limits makes it remember; writing 0 then hands the fan back. Unreadable limits
// do not prevent the hand-back: usually the driver still remembers, and the fan's current target or speed is
// within its limits.
int DriverFanWriter::handBackByTarget() {
    const std::optional<std::int64_t> lowest = read(file("fan", "_min"));
    const std::optional<std::int64_t> highest = read(file("fan", "_max"));
    if ((lowest && *lowest < 1) || (highest && *highest < lowest.value_or(1))) {
        return EINVAL;
    }
    const std::string target = file("fan", "_target");
    std::int64_t harmless = read(target).value_or(highest.value_or(0));
    if (harmless < 1 && !lowest) {
        harmless = read(file("fan", "_input")).value_or(0);
    }
    if (harmless < 1 && !lowest) {
        harmless = highest.value_or(0);
    }
    if (lowest) {
        harmless = std::max(harmless, *lowest);
    }
    if (highest) {
        harmless = std::min(harmless, *highest);
    }
    if (harmless >= 1) {
        static_cast<void>(write(target, harmless));
    }
    const int error = write(target, 0);
    if (error == 0) {
        forget();
    }
    return error;
}

// During sleep the controller forgets that the fan is manual, but the driver does not; a new target alone
// would then not set the mode again. Writing 0 first makes the driver forget, too.
bool DriverFanWriter::mustRearm(std::int64_t currentTarget) {
    const std::optional<std::string> text =
        files_.readText(std::string(stateFolder) + "/fan" + std::to_string(channel_ - 1));
    const std::optional<std::string> bootId = files_.readText(bootIdFile);
    const std::optional<FanState> state = text ? parseState(*text) : std::nullopt;
    if (!state || !bootId || state->bootId != firstLine(*bootId)) {
        return true;
    }
    if (files_.sleepOffset().count() - state->sleepOffsetMilliseconds > toleratedSleepMilliseconds) {
        return true;
    }
    return currentTarget > state->rpm + toleratedDriftRPM || currentTarget < state->rpm - toleratedDriftRPM;
}

void DriverFanWriter::remember(std::int64_t rpm) {
    const std::optional<std::string> bootId = files_.readText(bootIdFile);
    if (!bootId) {
        return;
    }
    const std::string text = std::string(firstLine(*bootId)) + ' ' +
                             std::to_string(files_.sleepOffset().count()) + ' ' + std::to_string(rpm) + '\n';
    // Without the saved state the next target re-arms the driver, which is harmless.
    static_cast<void>(files_.store(std::string(stateFolder), "fan" + std::to_string(channel_ - 1), text));
}

void DriverFanWriter::forget() {
    files_.remove(std::string(stateFolder) + "/fan" + std::to_string(channel_ - 1));
}

bool isManualControlAllowed(DriverFiles& files) {
    const std::optional<DriverFiles::Status> status = files.status(allowingFile);
    return status && status->isRegular && status->owner == 0;
}

} // namespace Fenwhirl
