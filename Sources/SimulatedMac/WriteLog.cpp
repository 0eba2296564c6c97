#include "SimulatedMac/WriteLog.h"

#include "SimulatedMac/TextParsing.h"
#include "SimulatedMac/ValueCoding.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <span>

namespace simulated {

namespace {

std::string timeText(double wallSeconds) {
    const double whole = std::floor(wallSeconds);
    const auto seconds = static_cast<std::time_t>(whole);
    std::tm parts{};
    ::gmtime_r(&seconds, &parts);
    std::array<char, 32> date{};
    (void)std::strftime(date.data(), date.size(), "%Y-%m-%dT%H:%M:%S", &parts);
    std::array<char, 8> fraction{};
    (void)std::snprintf(fraction.data(), fraction.size(), ".%03dZ",
                        static_cast<int>((wallSeconds - whole) * 1000) % 1000);
    return std::string(date.data()) + fraction.data();
}

std::string hexNumber(std::uint32_t value, int digits) {
    std::array<char, 16> text{};
    (void)std::snprintf(text.data(), text.size(), "0x%0*X", digits, value);
    return text.data();
}

std::string trimmedCode(FourCC code) {
    std::string text = fourCCText(code);
    text.erase(text.find_last_not_of(' ') + 1);
    return text;
}

} // namespace

const WriteEntry& WriteLog::add(WriteEntry entry) {
    entry.number = ++last_;
    if (entries_.size() == capacity) {
        entries_.pop_front();
    }
    entries_.push_back(entry);
    return entries_.back();
}

std::deque<WriteEntry>::const_iterator WriteLog::after(std::uint64_t number) const {
    if (entries_.empty() || number < entries_.front().number) {
        return entries_.begin();
    }
    const std::uint64_t skipped = number - entries_.front().number + 1;
    return entries_.begin() + static_cast<std::ptrdiff_t>(std::min<std::uint64_t>(skipped, entries_.size()));
}

std::string writeEntryText(const WriteEntry& entry) {
    const std::span bytes(entry.bytes.data(), std::min<std::size_t>(entry.size, entry.bytes.size()));
    const auto value = decodeValue(entry.type, bytes);
    return "write " + std::to_string(entry.number) + " time=" + timeText(entry.wallSeconds) +
           " at=" + fixedText(entry.simulatedSeconds, 3) + " pid=" + std::to_string(entry.peer.process) +
           " uid=" + std::to_string(entry.peer.user) + " key=" + trimmedCode(entry.code) +
           " type=" + (entry.type == 0 ? "-" : trimmedCode(entry.type)) +
           " bytes=" + (bytes.empty() ? "-" : hexText(bytes)) +
           " value=" + (value ? fixedText(*value, 2) : "?") + " kernel=" + hexNumber(entry.kernelReturn, 8) +
           " result=" + hexNumber(entry.result, 2);
}

} // namespace simulated
