// The least that a helper can cost: a C++ program with a static C++ run-time library. It connects to the
// controller if there is something to ask, makes the given number of round trips, and exits.
//
// Usage: HelperFloor ROUND_TRIPS

#include "FenwhirlCore/SMCRecord.h"

#include <array>
#include <cstdlib>
#include <string>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

int main(int argc, char** argv) {
    const std::string count = argc > 1 ? argv[1] : "0";
    int left = std::atoi(count.c_str());
    if (left == 0) {
        return write(STDOUT_FILENO, "3\n", 2) == 2 ? EXIT_SUCCESS : EXIT_FAILURE;
    }
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    std::string("/run/fenwhirl/AppleSMC").copy(address.sun_path, sizeof address.sun_path - 1);
    const int connection = socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0);
    if (connect(connection, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
        return EXIT_FAILURE;
    }
    Fenwhirl::SMCParam request = {};
    request.key = 0x464E756D; // "FNum"
    request.data8 = Fenwhirl::SMCCommand::keyInfo;
    std::array<char, 128> reply = {};
    for (; left > 0; --left) {
        if (send(connection, &request, sizeof request, MSG_NOSIGNAL) < 0 ||
            recv(connection, reply.data(), reply.size(), 0) <= 0) {
            return EXIT_FAILURE;
        }
    }
    return EXIT_SUCCESS;
}
