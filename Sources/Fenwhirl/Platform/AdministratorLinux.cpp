#include "Fenwhirl/Platform/Administrator.h"

std::vector<std::string> administratorInvocation(const std::string& command, bool isRoot) {
    if (isRoot)
        return {"/bin/sh", "-c", command};
    return {"/usr/bin/pkexec", "/bin/sh", "-c", command};
}

std::string_view administratorGroup() {
    return "root";
}

bool administratorRenames() {
    return true;
}
