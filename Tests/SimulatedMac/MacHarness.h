// A simulated Mac whose clock the test controls. Tests send it records, as a client does.

#pragma once

#include "SimulatedMac/Mac.h"
#include "SimulatedMac/TextParsing.h"

#include <algorithm>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace simulated {

struct MacHarness {
    Instant now{.steadySeconds = 1000, .wallSeconds = 1'700'000'000};
    Mac mac;
    Peer peer{.process = 4711, .user = 0};

    explicit MacHarness(std::string_view machine = "MacBookPro11,4") : mac(*findMachine(machine), now) {}

    void pass(double seconds) {
        now.steadySeconds += seconds;
        now.wallSeconds += seconds;
    }

    Reply call(std::uint8_t command, FourCC key, std::uint32_t size = 0,
               std::span<const std::uint8_t> bytes = {}, std::uint32_t index = 0) {
        Fenwhirl::SMCParam request{};
        request.key = key;
        request.data8 = command;
        request.keyInfo.dataSize = size;
        request.data32 = index;
        std::copy(bytes.begin(), bytes.end(), request.bytes.begin());
        return mac.handle(request, peer, now);
    }

    Reply info(FourCC key) { return call(Fenwhirl::SMCCommand::keyInfo, key); }

    Reply byIndex(std::uint32_t index) { return call(Fenwhirl::SMCCommand::keyByIndex, 0, 0, {}, index); }

    Reply read(FourCC key) {
        return call(Fenwhirl::SMCCommand::readKey, key, info(key).record.keyInfo.dataSize);
    }

    // Writes bytes given in hexadecimal; their number is the size of the write.
    Reply write(FourCC key, std::string_view hex) {
        const auto bytes = *parseHexBytes(hex, 32);
        return call(Fenwhirl::SMCCommand::writeKey, key, static_cast<std::uint32_t>(bytes.size()), bytes);
    }

    std::string bytesOf(FourCC key) {
        const Reply reply = read(key);
        const std::size_t size = std::min<std::size_t>(info(key).record.keyInfo.dataSize, 32);
        return reply.record.result == 0 ? hexText(std::span(reply.record.bytes).first(size)) : "unreadable";
    }
};

} // namespace simulated
