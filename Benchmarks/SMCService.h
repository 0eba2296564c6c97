// A controller in another process, behind a socket like the simulated Mac's.
//
// It has the keys of any number of fans and of sensors ("T" and three digits), and answers at once. Both processes
// run on one processor, because a round trip across processors would measure the machine's idle states.

#pragma once

#include <string>
#include <sys/types.h>

namespace Fenwhirl {

class SMCService {
public:
    explicit SMCService(int sensorCount, int fanCount = 2);
    ~SMCService();
    SMCService(const SMCService&) = delete;
    SMCService& operator=(const SMCService&) = delete;

    [[nodiscard]] const std::string& path() const { return path_; }

private:
    std::string folder_;
    std::string path_;
    pid_t process_ = -1;
};

// The key of a sensor.
[[nodiscard]] std::string sensorKey(int number);

} // namespace Fenwhirl
