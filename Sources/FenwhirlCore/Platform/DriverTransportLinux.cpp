#include "FenwhirlCore/FourCC.h"
#include "FenwhirlCore/Platform/DriverFanWriter.h"
#include "FenwhirlCore/Platform/DriverKeys.h"
#include "FenwhirlCore/Platform/DriverTransport.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cerrno>
#include <charconv>

namespace Fenwhirl {

namespace {

using std::chrono::milliseconds;

constexpr milliseconds rediscoveryInterval{2000};
constexpr milliseconds stuckPause{5000}; // a stuck controller costs up to half a second per value read
constexpr int failuresUntilStuck = 3;

constexpr std::uint8_t attributeReadable = 0x80;
constexpr std::uint8_t attributeWritable = 0x40;

// Whether the kernel refused the access, as opposed to an error of the controller behind it.
bool isRefusal(int error) {
    return error == EACCES || error == EPERM || error == EROFS || error == ENODEV || error == ENOENT;
}

void putBigEndian(SMCParam& output, std::uint32_t value, std::size_t size) {
    for (std::size_t i = 0; i < size; ++i) {
        output.bytes[i] = static_cast<std::uint8_t>(value >> (8 * (size - 1 - i)));
    }
}

void putFloat(SMCParam& output, float value) {
    const auto bits = std::bit_cast<std::uint32_t>(value);
    for (std::size_t i = 0; i < 4; ++i) {
        output.bytes[i] = static_cast<std::uint8_t>(bits >> (8 * i));
    }
}

class DriverTransport final : public SMCTransport {
public:
    DriverTransport(std::unique_ptr<DriverFiles> files, DriverKeyTable table)
        : files_(std::move(files))
        , table_(std::move(table))
        , descriptors_(table_.keys.size(), closed)
        , vanished_(table_.keys.size(), false) {}

    ~DriverTransport() override { closeAll(); }

    DriverTransport(const DriverTransport&) = delete;
    DriverTransport& operator=(const DriverTransport&) = delete;
    DriverTransport(DriverTransport&&) = delete;
    DriverTransport& operator=(DriverTransport&&) = delete;

    std::optional<SMCParam> call(const SMCParam& input) override {
        switch (input.data8) {
        case SMCCommand::keyInfo:
            return keyInfo(input);
        case SMCCommand::keyByIndex:
            return keyByIndex(input);
        case SMCCommand::readKey:
            return read(input);
        case SMCCommand::writeKey:
            return write(input);
        default:
            return answer(SMCResult::notReadable);
        }
    }

private:
    static constexpr int closed = -1;

    static SMCParam answer(std::uint8_t result) {
        SMCParam output{};
        output.result = result;
        return output;
    }

    [[nodiscard]] std::size_t indexOf(const DriverKey& key) const {
        return static_cast<std::size_t>(&key - table_.keys.data());
    }

    [[nodiscard]] const DriverKey* find(std::uint32_t code) const {
        const DriverKey* key = table_.find(code);
        return key != nullptr && !vanished_[indexOf(*key)] ? key : nullptr;
    }

    [[nodiscard]] SMCParam keyInfo(const SMCParam& input) const {
        const DriverKey* key = find(input.key);
        if (key == nullptr) {
            return answer(SMCResult::keyNotFound);
        }
        SMCParam output{};
        output.keyInfo.dataSize = key->size;
        output.keyInfo.dataType = fourCharacterCode(key->type);
        output.keyInfo.dataAttributes = attributesOf(*key);
        return output;
    }

    [[nodiscard]] std::uint8_t attributesOf(const DriverKey& key) const {
        const bool isFan =
            key.source == DriverKey::Source::fanTarget || key.source == DriverKey::Source::fanMode;
        if (!isFan || styleOf(key) == FanControlStyle::readOnly) {
            return attributeReadable;
        }
        const bool isReadable = !key.file.empty();
        return static_cast<std::uint8_t>(attributeWritable | (isReadable ? attributeReadable : 0));
    }

    [[nodiscard]] FanControlStyle styleOf(const DriverKey& key) const {
        return table_.fans[static_cast<std::size_t>(key.fanChannel) - 1];
    }

    [[nodiscard]] SMCParam keyByIndex(const SMCParam& input) const {
        if (input.data32 >= table_.keys.size()) {
            return answer(SMCResult::indexRange);
        }
        SMCParam output{};
        output.key = table_.keys[input.data32].code;
        return output;
    }

    std::optional<SMCParam> read(const SMCParam& input) {
        const DriverKey* key = find(input.key);
        if (key == nullptr) {
            return answer(SMCResult::keyNotFound);
        }
        if (input.keyInfo.dataSize != key->size) {
            return answer(SMCResult::sizeMismatch);
        }
        SMCParam output{};
        if (key->source == DriverKey::Source::keyCount) {
            putBigEndian(output, static_cast<std::uint32_t>(table_.keys.size()), 4);
            return output;
        }
        if (key->source == DriverKey::Source::fanCount) {
            putBigEndian(output, static_cast<std::uint32_t>(table_.fans.size()), 1);
            return output;
        }
        if (key->file.empty()) {
            return answer(SMCResult::notReadable);
        }

        std::int64_t value = 0;
        if (const int error = readNumber(*key, value); error != 0) {
            return isRefusal(error) ? std::nullopt : std::optional(answer(SMCResult::notReadable));
        }
        put(output, *key, value);
        return output;
    }

    void put(SMCParam& output, const DriverKey& key, std::int64_t value) const {
        if (key.source == DriverKey::Source::temperature) {
            // In thousandths of a degree. The Intel driver's quarter-degree steps are exact in 1/256.
            constexpr std::int64_t mostMilli = 127'996;
            if (table_.isIntelDriver) {
                putBigEndian(output,
                             static_cast<std::uint32_t>(std::clamp<std::int64_t>(value, -128'000, mostMilli) *
                                                        256 / 1000) &
                                 0xFFFFU,
                             2);
            } else {
                putFloat(output, static_cast<float>(value) / 1000.0F);
            }
        } else if (key.source == DriverKey::Source::fanMode) {
            putBigEndian(
                output,
                static_cast<std::uint32_t>(isManual(styleOf(key), value) ? manualByte(key, value) : 0), 1);
        } else if (table_.isIntelDriver) {
            putBigEndian(output, static_cast<std::uint32_t>(std::clamp<std::int64_t>(value, 0, 16'383) * 4),
                         2);
        } else {
            putFloat(output, static_cast<float>(value));
        }
    }

    static bool isManual(FanControlStyle style, std::int64_t value) {
        if (style == FanControlStyle::targetAndEnable) {
            return value != 1;
        }
        if (style == FanControlStyle::targetAndPwm) {
            return value == 1;
        }
        return value != 0;
    }

    // The Intel driver prints the mode byte of the controller; the other drivers have
    // conventions of their own.
    [[nodiscard]] std::int64_t manualByte(const DriverKey& key, std::int64_t value) const {
        return styleOf(key) == FanControlStyle::manualAndOutput ? (value & 0xFF) : 1;
    }

    // One read on a descriptor that stays open; returns 0 or an errno.
    int readNumber(const DriverKey& key, std::int64_t& value) {
        // The clock is only read when there is something to compare it with: sixty sensors are read in a poll.
        if (stuckUntil_ != milliseconds(0) && files_->now() < stuckUntil_) {
            return EIO;
        }
        const std::size_t slot = indexOf(key);
        if (descriptors_[slot] == closed) {
            const int descriptor = files_->open(table_.folder + "/" + key.file, DriverFiles::Access::read);
            if (descriptor < 0) {
                return noteFailure(-descriptor);
            }
            descriptors_[slot] = descriptor;
        }
        std::array<char, 64> buffer{};
        const ssize_t count = files_->readAt0(descriptors_[slot], buffer);
        if (count < 0) {
            return noteFailure(static_cast<int>(-count));
        }
        failures_ = 0;
        const auto [end, error] = std::from_chars(buffer.data(), buffer.data() + count, value);
        const bool wholeLine = end == buffer.data() + count || *end == '\n';
        return error == std::errc() && wholeLine ? 0 : EINVAL;
    }

    int noteFailure(int error) {
        if (error == ENODEV || error == ENOENT) {
            rediscover();
        } else if (error == EIO || error == ETIMEDOUT) {
            if (++failures_ >= failuresUntilStuck) {
                failures_ = 0;
                stuckUntil_ = files_->now() + stuckPause;
            }
        }
        return error;
    }

    // The device went away, or came back under another number. The list of keys stays unchanged, because the
    // program has already enumerated it. A key that no longer exists is not found any more: its file may now belong to
    // another one.
    void rediscover() {
        closeAll();
        const milliseconds now = files_->now();
        if (lastRediscovery_ && now - *lastRediscovery_ < rediscoveryInterval) {
            return;
        }
        lastRediscovery_ = now;
        const std::optional<DriverKeyTable> found = discoverDriverKeys(*files_);
        if (!found) {
            return;
        }
        table_.folder = found->folder;
        table_.seesProcessor = found->seesProcessor;
        for (DriverKey& key : table_.keys) {
            const DriverKey* const again = found->find(key.code);
            vanished_[indexOf(key)] = again == nullptr;
            if (again != nullptr) {
                key.file = again->file;
            }
        }
    }

    void closeAll() {
        for (int& descriptor : descriptors_) {
            if (descriptor != closed) {
                files_->close(descriptor);
            }
            descriptor = closed;
        }
    }

    std::optional<SMCParam> write(const SMCParam& input) {
        const DriverKey* key = find(input.key);
        if (key == nullptr) {
            return answer(SMCResult::keyNotFound);
        }
        if (input.keyInfo.dataSize != key->size) {
            return answer(SMCResult::sizeMismatch);
        }
        if ((attributesOf(*key) & attributeWritable) == 0) {
            return answer(SMCResult::notWritable);
        }

        const bool isMode = key->source == DriverKey::Source::fanMode;
        const std::int64_t value = isMode ? input.bytes[0] : speedIn(input, *key);
        const bool handsBack = isMode && value == 0;
        if (!handsBack && !table_.seesProcessor && !isManualControlAllowed(*files_)) {
            return std::nullopt;
        }

        DriverFanWriter writer(*files_, table_.folder, key->fanChannel, styleOf(*key));
        const int error = isMode ? writer.setManual(value != 0) : writer.setTarget(value);
        if (error == 0) {
            return answer(SMCResult::success);
        }
        if (error == ENODEV || error == ENOENT) {
            rediscover();
        }
        return isRefusal(error) ? std::nullopt : std::optional(answer(SMCResult::notWritable));
    }

    // A written target in whole revolutions per minute.
    [[nodiscard]] std::int64_t speedIn(const SMCParam& input, const DriverKey& key) const {
        if (key.type == "fpe2") {
            return (input.bytes[0] << 8U | input.bytes[1]) >> 2U;
        }
        std::uint32_t bits = 0;
        for (std::size_t i = 0; i < 4; ++i) {
            bits |= static_cast<std::uint32_t>(input.bytes[i]) << (8 * i);
        }
        const auto speed = std::bit_cast<float>(bits);
        // Anything that is not a plausible fan speed becomes 0, which is refused.
        return speed > 0 && speed < 1e6F ? static_cast<std::int64_t>(speed) : 0;
    }

    std::unique_ptr<DriverFiles> files_;
    DriverKeyTable table_;
    std::vector<int> descriptors_; // by index in the table
    std::vector<bool> vanished_;   // by index in the table
    int failures_ = 0;             // consecutive times that the controller did not answer
    milliseconds stuckUntil_{0};
    std::optional<milliseconds> lastRediscovery_;
};

} // namespace

std::unique_ptr<SMCTransport> openDriverTransport(std::unique_ptr<DriverFiles> files) {
    std::optional<DriverKeyTable> table = discoverDriverKeys(*files);
    if (!table) {
        return nullptr;
    }
    return std::make_unique<DriverTransport>(std::move(files), std::move(*table));
}

std::unique_ptr<SMCTransport> openDriverTransport() {
    return openDriverTransport(systemDriverFiles());
}

} // namespace Fenwhirl
