#include "SMCService.h"

#include "FenwhirlCore/SMC.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <sched.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

namespace Fenwhirl {

namespace {

struct Reply {
    std::uint32_t kernelReturn;
    SMCParam record;
};

[[noreturn]] void fail(const char* what) {
    std::perror(what);
    std::exit(EXIT_FAILURE);
}

struct Machine {
    int sensorCount;
    int fanCount;
};

SMCParam answer(const SMCParam& request, const Machine& machine) {
    SMCParam record{};
    const bool isCount = request.key == SMC::fourCC("FNum") || request.key == SMC::fourCC("#KEY");
    const bool isSensor = request.key >> 24U == 'T';
    if (request.data8 == SMCCommand::keyByIndex) {
        record.key = SMC::fourCC(sensorKey(static_cast<int>(request.data32)));
    } else if (request.data8 == SMCCommand::keyInfo) {
        record.keyInfo.dataSize = isCount ? 4 : 2;
        record.keyInfo.dataType = SMC::fourCC(isCount ? "ui32" : isSensor ? "sp78" : "fpe2");
    } else if (isCount) {
        const int count = request.key == SMC::fourCC("FNum") ? machine.fanCount : machine.sensorCount;
        record.bytes[2] = static_cast<std::uint8_t>(count / 256);
        record.bytes[3] = static_cast<std::uint8_t>(count % 256);
    } else {
        record.bytes[0] = 0x2F;
    }
    return record;
}

[[noreturn]] void serveConnection(int connection, const Machine& machine) {
    SMCParam request{};
    while (recv(connection, &request, sizeof(request), 0) == sizeof(request)) {
        const Reply reply{.kernelReturn = 0, .record = answer(request, machine)};
        send(connection, &reply, sizeof(reply), MSG_NOSIGNAL);
    }
    _exit(EXIT_SUCCESS);
}

// Starts one process per connection, so that no connection waits for another; each ends with its connection.
[[noreturn]] void serve(int listener, const Machine& machine) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    signal(SIGCHLD, SIG_IGN);
    while (true) {
        const int connection = accept(listener, nullptr, nullptr);
        if (fork() == 0) {
            serveConnection(connection, machine);
        }
        close(connection);
    }
}

} // namespace

std::string sensorKey(int number) {
    constexpr std::string_view digits = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ";
    const auto digit = [&](int place) { return digits[static_cast<std::size_t>(number / place % 36)]; };
    return {'T', digit(36 * 36), digit(36), digit(1)};
}

SMCService::SMCService(int sensorCount, int fanCount) {
    cpu_set_t first;
    CPU_ZERO(&first);
    CPU_SET(0, &first);
    sched_setaffinity(0, sizeof(first), &first);

    char folder[] = "/tmp/fenwhirl-benchmark-XXXXXX";
    if (mkdtemp(folder) == nullptr) {
        fail("folder");
    }
    folder_ = folder;
    path_ = folder_ + "/AppleSMC";
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    path_.copy(address.sun_path, sizeof(address.sun_path) - 1);
    const int listener = socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0);
    if (bind(listener, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) != 0 ||
        listen(listener, 8) != 0) {
        fail("listen");
    }
    process_ = fork();
    if (process_ < 0) {
        fail("fork");
    }
    if (process_ == 0) {
        serve(listener, {.sensorCount = sensorCount, .fanCount = fanCount});
    }
    close(listener);
}

SMCService::~SMCService() {
    kill(process_, SIGKILL);
    waitpid(process_, nullptr, 0);
    std::filesystem::remove_all(folder_);
}

} // namespace Fenwhirl
