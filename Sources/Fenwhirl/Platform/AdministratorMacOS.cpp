#include "Fenwhirl/Platform/Administrator.h"

std::vector<std::string> administratorInvocation(const std::string& command, bool) {
    return {"/usr/bin/osascript", "-e", administratorScript(command)};
}

std::string_view administratorGroup() {
    return "wheel";
}
