// The controller of a real Mac that runs Linux, through the kernel's hardware-monitoring drivers.
//
// The drivers expose attributes as text files. This transport presents them as the keys, types and commands
// that the rest of the program uses, so that no layer above it sees the difference. Supported drivers:
// "applesmc" (Intel, also on T2 machines), "macsmc_hwmon" (Apple Silicon) and "t2smc". Keys are derived from
// the files that exist: "#KEY", "FNum", F{i}Ac/Mn/Mx/Tg/Md and one key per temperature channel. "FS! " and
// "Ftst" are never among them, because the drivers do that work.
//
// Safety: where no temperature belongs to the processor, putting a fan under manual control is refused,
// because no safety rule could see the processor get hot. Root may allow it by creating
// /etc/fenwhirl/allow-fan-control. This rule never prevents a fan from being handed back.
//
// Cost: key information comes from memory; a value is one pread on a descriptor that stays open. When the
// controller has failed to answer the driver three times in a row, reads fail immediately for five seconds,
// because each failure costs up to half a second. The transport searches for a device that went away at most
// once every two seconds.
//
// Threads and ownership: as for `SMCTransport`; the transport owns the files.

#pragma once

#include "FenwhirlCore/Platform/DriverFiles.h"
#include "FenwhirlCore/SMCTransport.h"

#include <memory>

namespace Fenwhirl {

// Null when no such driver is loaded, as is normal on a computer that is not a Mac.
[[nodiscard]] std::unique_ptr<SMCTransport> openDriverTransport();

// The same on the caller's files; for tests, which supply their own file tree.
[[nodiscard]] std::unique_ptr<SMCTransport> openDriverTransport(std::unique_ptr<DriverFiles> files);

} // namespace Fenwhirl
