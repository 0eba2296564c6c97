// Program entry: one executable, two roles. With "--helper" as its first argument it is the privileged
// helper; otherwise it is the application, whose library is loaded only then. The copy that runs as root
// links nothing but the C library, to keep its attack surface small.

#include "Fenwhirl/Helper.h"
#include "Fenwhirl/Platform/Entry/ExecutablePath.h"
#include "Fenwhirl/Platform/Entry/HelperProcess.h"

#include <csignal>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <memory>
#include <span>
#include <unistd.h>

namespace Fenwhirl {

namespace {

// Exit status of the set-user-ID copy when it was started as if it were the application.
constexpr int startedWithoutHelperFlag = 77;

using ApplicationMain = int (*)(int argc, char** argv);

ApplicationMain loadApplication() {
    const auto executable = executablePath();
    if (!executable) {
        return nullptr;
    }
    // Not RTLD_NOW, which would look up every symbol of every library at once; of most libraries only a small part is
    // ever called. Ours is linked so that all it needs must be there in any case.
    void* const library = dlopen(applicationLibraryPath(*executable).c_str(), RTLD_LAZY);
    if (library == nullptr) {
        return nullptr;
    }
    return reinterpret_cast<ApplicationMain>(dlsym(library, "fenwhirl_app_main"));
}

int runApplication(int argc, char** argv) {
    // Descriptors opened later must not be taken for standard output. And if our parent made us ignore
    // SIGCHLD, every helper run would look as if it had failed.
    if (!HelperProcess::occupyStandardDescriptors()) {
        return EXIT_FAILURE;
    }
    (void)std::signal(SIGCHLD, SIG_DFL);
    const ApplicationMain application = loadApplication();
    if (application == nullptr) {
        const char* const reason = dlerror();
        (void)std::fprintf(stderr, "Fenwhirl : impossible de charger l'application (%s).\n",
                           reason != nullptr ? reason : "programme introuvable");
        return EXIT_FAILURE;
    }
    return application(argc, argv);
}

} // namespace

} // namespace Fenwhirl

int main(int argc, char** argv) {
    if (argc >= 2 && std::strcmp(argv[1], "--helper") == 0) {
        const std::span arguments(argv + 2, static_cast<std::size_t>(argc - 2));
        if (Fenwhirl::HelperProcess::prepare()) {
            return Fenwhirl::HelperMode::run(arguments);
        }
        // Only commands that need no controller can be served: the controller's connection could get the
        // number of a standard stream.
        return Fenwhirl::HelperMode::run(arguments, [] { return std::unique_ptr<Fenwhirl::SMC>(); });
    }
    if (geteuid() == 0 && getuid() != 0) {
        return Fenwhirl::startedWithoutHelperFlag;
    }
    return Fenwhirl::runApplication(argc, argv);
}
