// The parameter record of the AppleSMC user client: the only wire format between a program and the System
// Management Controller.
//
// Both directions use the same 80-byte record. Integers are in the machine's native byte order, except the
// contents of `bytes`, whose order is that of the SMC value (see SMCValue.h). Every field that a command does
// not use is zero, including padding, so a record is always value-initialised before it is filled.
//
// The layout is the kernel's (a C structure with natural alignment, the same on arm64 and x86_64); the
// assertions below enforce it. The simulated Mac shares this header, and nothing else, with the product.

#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <type_traits>

namespace Fenwhirl {

// The commands of `SMCParam::data8`.
namespace SMCCommand {
inline constexpr std::uint8_t readKey = 5;    // in: key, keyInfo.dataSize; out: bytes
inline constexpr std::uint8_t writeKey = 6;   // in: key, keyInfo.dataSize, bytes; out: result only
inline constexpr std::uint8_t keyByIndex = 8; // in: data32, the index; out: key
inline constexpr std::uint8_t keyInfo = 9;    // in: key; out: keyInfo.dataSize, keyInfo.dataType
} // namespace SMCCommand

// The results in `SMCParam::result`. The program only distinguishes zero from the rest; the simulated Mac
// answers like real firmware.
namespace SMCResult {
inline constexpr std::uint8_t success = 0x00;
inline constexpr std::uint8_t keyNotFound = 0x84;
inline constexpr std::uint8_t notReadable = 0x85;
inline constexpr std::uint8_t notWritable = 0x86;
inline constexpr std::uint8_t sizeMismatch = 0x87;
inline constexpr std::uint8_t indexRange = 0xB8;
} // namespace SMCResult

// Kernel return codes that precede the record in a reply of the simulated Mac's socket.
namespace KernelReturn {
inline constexpr std::uint32_t success = 0;
inline constexpr std::uint32_t notPrivileged = 0xE00002C1U;
} // namespace KernelReturn

struct SMCVersion {
    std::uint8_t major;
    std::uint8_t minor;
    std::uint8_t build;
    std::uint8_t reserved;
    std::uint16_t release;
};

struct SMCPLimitData {
    std::uint16_t version;
    std::uint16_t length;
    std::uint32_t cpuPLimit;
    std::uint32_t gpuPLimit;
    std::uint32_t memPLimit;
};

struct SMCKeyInfo {
    std::uint32_t dataSize; // length of the value in bytes; may exceed the 32 that a record can carry
    std::uint32_t dataType; // four-character code of the value's type
    std::uint8_t dataAttributes;
    std::array<std::uint8_t, 3> padding;
};

struct SMCParam {
    std::uint32_t key; // four-character code, first character in the most significant byte
    SMCVersion vers;
    std::array<std::uint8_t, 2> paddingAfterVersion;
    SMCPLimitData pLimitData;
    SMCKeyInfo keyInfo;
    std::uint8_t result; // an SMCResult
    std::uint8_t status;
    std::uint8_t data8; // an SMCCommand
    std::uint8_t paddingAfterCommand;
    std::uint32_t data32;
    std::array<std::uint8_t, 32> bytes;
};

static_assert(sizeof(SMCParam) == 80 && std::is_trivially_copyable_v<SMCParam>);
static_assert(offsetof(SMCParam, key) == 0 && offsetof(SMCParam, vers) == 4);
static_assert(offsetof(SMCVersion, minor) == 1 && offsetof(SMCVersion, build) == 2);
static_assert(offsetof(SMCVersion, reserved) == 3 && offsetof(SMCVersion, release) == 4 &&
              sizeof(SMCVersion) == 6);
static_assert(offsetof(SMCParam, paddingAfterVersion) == 10 && offsetof(SMCParam, pLimitData) == 12);
static_assert(offsetof(SMCPLimitData, length) == 2 && offsetof(SMCPLimitData, cpuPLimit) == 4);
static_assert(offsetof(SMCPLimitData, gpuPLimit) == 8 && offsetof(SMCPLimitData, memPLimit) == 12);
static_assert(offsetof(SMCParam, keyInfo) == 28 && offsetof(SMCKeyInfo, dataType) == 4);
static_assert(offsetof(SMCKeyInfo, dataAttributes) == 8 && sizeof(SMCKeyInfo) == 12);
static_assert(offsetof(SMCParam, result) == 40 && offsetof(SMCParam, status) == 41);
static_assert(offsetof(SMCParam, data8) == 42 && offsetof(SMCParam, data32) == 44 &&
              offsetof(SMCParam, bytes) == 48);

} // namespace Fenwhirl
