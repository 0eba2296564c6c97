// The controller of a real Mac that runs Linux, through the kernel's hardware-monitoring drivers.
//
// The drivers show attributes as text files; this transport presents them as the keys, types and commands
// that the rest of the program speaks, so that nothing above it knows the difference. Supported: "applesmc"
// (Intel, also on T2 machines), "macsmc_hwmon" (Apple Silicon) and "t2smc". Keys are made from the files that
// exist: "#KEY", "FNum", F{i}Ac/Mn/Mx/Tg/Md and one key per temperature channel. "FS! " and "Ftst" are never
// among them, because the drivers do that work.
//
// Safety: where no temperature belongs to the processor, putting a fan under manual control is refused,
// because no rule above could see the processor get hot; root may allow it by creating
// /etc/fenwhirl/allow-fan-control. Handing a fan back is never refused by this rule.
//
// Cost: key information comes from memory; a value is one pread on a descriptor that is kept. After three
// times in a row that the controller did not answer the driver, reading fails at once for five seconds: each
// such time costs up to half a second. A device that goes away is looked for again at most every two seconds.
//
// Threads and ownership: as `SMCTransport`; the transport owns the files.

#pragma once

#include "FenwhirlCore/Platform/DriverFiles.h"
#include "FenwhirlCore/SMCTransport.h"

#include <memory>

// Null when no such driver is loaded, which is the rule on a computer that is no Mac.
[[nodiscard]] std::unique_ptr<SMCTransport> openDriverTransport();

// The same on files of the caller's choice: for tests, which bring a tree of their own.
[[nodiscard]] std::unique_ptr<SMCTransport> openDriverTransport(std::unique_ptr<DriverFiles> files);
