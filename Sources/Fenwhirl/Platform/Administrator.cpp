#include "Fenwhirl/Platform/Administrator.h"

#include "Fenwhirl/Platform/Toolkit/ChildProcess.h"

#include <span>
#include <unistd.h>

namespace Fenwhirl {

std::string administratorScript(std::string_view command) {
    std::string script = "do shell script \"";
    script += command;
    script += "\" with administrator privileges";
    return script;
}

std::vector<std::string> scriptedAdministratorInvocation(std::string_view command) {
    return {"/usr/bin/osascript", "-e", administratorScript(command)};
}

bool runAsAdministrator(const std::string& command) {
    const std::vector<std::string> invocation = administratorInvocation(command, geteuid() == 0);
    const auto result = runChild(invocation.front(), std::span(invocation).subspan(1), ChildOutput::discard,
                                 ChildEnvironment::inherited);
    return result && result->succeeded();
}

} // namespace Fenwhirl
