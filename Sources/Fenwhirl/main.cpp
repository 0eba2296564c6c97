// Program entry: the privileged helper, or the application.

#include "Fenwhirl/Helper.h"

#include <climits>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <string>
#include <unistd.h>

namespace {

constexpr int startedWithoutHelperFlag = 77;

int runApplication(int argc, char** argv) {
    char path[PATH_MAX] = {};
    if (realpath("/proc/self/exe", path) == nullptr)
        return 1;
    std::string library(path);
    library.resize(library.rfind('/'));
    library += "/../lib/fenwhirl/libFenwhirlApp.so";
    void* handle = dlopen(library.c_str(), RTLD_NOW);
    if (handle == nullptr)
        return 1;
    auto* entry = reinterpret_cast<int (*)(int, char**)>(dlsym(handle, "fenwhirl_app_main"));
    return entry != nullptr ? entry(argc, argv) : 1;
}

} // namespace

int main(int argc, char** argv) {
    if (argc >= 2 && std::strcmp(argv[1], "--helper") == 0)
        return HelperMode::run({argv + 2, static_cast<std::size_t>(argc - 2)});
    if (geteuid() == 0 && getuid() != 0)
        return startedWithoutHelperFlag;
    return runApplication(argc, argv);
}
