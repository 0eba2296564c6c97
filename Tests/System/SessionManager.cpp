// A minimal X session manager (XSMP) for tests: accepts programs into its session and ends that session.
//
// It first prints its address, which tests pass to programs as SESSION_MANAGER. Afterwards it prints "joined"
// for each program that joins, "saved" for each that reports that it has saved its state (and that it wants to be
// restarted with the next session, if it does not say otherwise), and "left" for each that has gone. It reads one command per line: "end" tells all programs that the session is about to end,
// "die" that it has ended, and "cancel" that it continues after all. It exits at the end of its input.

#include <X11/ICE/ICElib.h>
#include <X11/ICE/ICEutil.h>
#include <X11/SM/SMlib.h>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <poll.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

struct Program {
    IceConn transport;
    SmsConn session;
};

std::vector<Program> programs;
bool wantsRestart = true; // as programs do that have not set their restart style

void say(const char* word) {
    (void)std::printf("%s\n", word);
    (void)std::fflush(stdout);
}

Bool everyoneMayJoin(char* /*host*/) {
    return True;
}

Status joined(SmsConn session, SmPointer /*data*/, char* previous) {
    if (previous != nullptr) {
        return 0; // there is no earlier session to restore: the program registers again without a previous ID
    }
    SmsRegisterClientReply(session, SmsGenerateClientID(session));
    SmsSaveYourself(session, SmSaveLocal, False, SmInteractStyleNone, False);
    say("joined");
    return 1;
}

void saved(SmsConn session, SmPointer /*data*/, Bool /*success*/) {
    SmsSaveComplete(session);
    say(wantsRestart ? "saved, to be restarted" : "saved");
}

void left(SmsConn session, SmPointer /*data*/, int count, char** reasons) {
    SmFreeReasons(count, reasons);
    const auto program =
        std::ranges::find_if(programs, [session](const Program& known) { return known.session == session; });
    if (program != programs.end()) {
        const IceConn transport = program->transport;
        SmsCleanUp(session);
        IceSetShutdownNegotiation(transport, False);
        IceCloseConnection(transport);
        programs.erase(program);
        say("left");
    }
}

void propertiesSet(SmsConn /*session*/, SmPointer /*data*/, int count, SmProp** properties) {
    for (int i = 0; i < count; ++i) {
        const SmProp& property = *properties[i];
        if (std::strcmp(property.name, SmRestartStyleHint) == 0 && property.num_vals == 1) {
            wantsRestart = *static_cast<const char*>(property.vals[0].value) != SmRestartNever;
        }
        SmFreeProperty(properties[i]);
    }
    std::free(static_cast<void*>(properties));
}

void propertiesDeleted(SmsConn /*session*/, SmPointer /*data*/, int count, char** names) {
    for (int i = 0; i < count; ++i) {
        std::free(names[i]);
    }
    std::free(static_cast<void*>(names));
}

Status newProgram(SmsConn session, SmPointer /*data*/, unsigned long* mask, SmsCallbacks* callbacks,
                  char** /*failure*/) {
    *mask = SmsRegisterClientProcMask | SmsInteractRequestProcMask | SmsInteractDoneProcMask |
            SmsSaveYourselfRequestProcMask | SmsSaveYourselfP2RequestProcMask | SmsSaveYourselfDoneProcMask |
            SmsCloseConnectionProcMask | SmsSetPropertiesProcMask | SmsDeletePropertiesProcMask |
            SmsGetPropertiesProcMask;
    callbacks->register_client.callback = joined;
    callbacks->interact_request.callback = [](SmsConn conn, SmPointer, int) { SmsInteract(conn); };
    callbacks->interact_done.callback = [](SmsConn, SmPointer, Bool) {};
    callbacks->save_yourself_request.callback = [](SmsConn, SmPointer, int, Bool, int, Bool, Bool) {};
    callbacks->save_yourself_phase2_request.callback = [](SmsConn conn, SmPointer) {
        SmsSaveYourselfPhase2(conn);
    };
    callbacks->save_yourself_done.callback = saved;
    callbacks->close_connection.callback = left;
    callbacks->set_properties.callback = propertiesSet;
    callbacks->delete_properties.callback = propertiesDeleted;
    callbacks->get_properties.callback = [](SmsConn conn, SmPointer) {
        SmsReturnProperties(conn, 0, nullptr);
    };
    programs.push_back({SmsGetIceConnection(session), session});
    return 1;
}

void carryOut(const std::string& command) {
    for (const Program& program : programs) {
        if (command == "end") {
            SmsSaveYourself(program.session, SmSaveBoth, True, SmInteractStyleNone, False);
        } else if (command == "die") {
            SmsDie(program.session);
        } else if (command == "cancel") {
            SmsShutdownCancelled(program.session);
        }
        IceFlush(program.transport);
    }
}

// Processes all messages that have arrived. Returns false when the connection is closed.
bool listen(IceConn transport) {
    return IceProcessMessages(transport, nullptr, nullptr) == IceProcessMessagesSuccess;
}

} // namespace

int main() {
    char problem[256] = {};
    int doors = 0;
    IceListenObj* door = nullptr;
    if (SmsInitialize("Fenwhirl", "1", newProgram, nullptr, everyoneMayJoin, sizeof problem, problem) == 0) {
        (void)std::fprintf(stderr, "SessionManager: %s\n", problem);
        return EXIT_FAILURE;
    }
    // libICE names its socket after the process ID. Another instance in its own PID namespace may have the
    // same ID, which makes listening fail; a forked child has the next ID and tries again.
    for (int attempt = 0; IceListenForConnections(&doors, &door, sizeof problem, problem) == 0; ++attempt) {
        const pid_t child = attempt < 20 ? fork() : -1;
        if (child < 0) {
            (void)std::fprintf(stderr, "SessionManager: %s\n", problem);
            return EXIT_FAILURE;
        }
        if (child > 0) {
            int status = 0;
            return waitpid(child, &status, 0) == child && WIFEXITED(status) ? WEXITSTATUS(status)
                                                                            : EXIT_FAILURE;
        }
    }
    for (int i = 0; i < doors; ++i) {
        IceSetHostBasedAuthProc(door[i], everyoneMayJoin);
    }
    (void)IceSetIOErrorHandler([](IceConn) {}); // the default handler would exit when a program disconnects
    say(IceComposeNetworkIdList(doors, door));

    std::vector<IceConn> transports;
    std::string input;
    for (;;) {
        std::vector<pollfd> waited = {{STDIN_FILENO, POLLIN, 0}};
        for (int i = 0; i < doors; ++i) {
            waited.push_back({IceGetListenConnectionNumber(door[i]), POLLIN, 0});
        }
        for (const IceConn transport : transports) {
            waited.push_back({IceConnectionNumber(transport), POLLIN, 0});
        }
        if (poll(waited.data(), waited.size(), -1) < 0) {
            continue;
        }
        if (waited[0].revents != 0) {
            char text[256];
            const ssize_t length = read(STDIN_FILENO, text, sizeof text);
            if (length <= 0) {
                return EXIT_SUCCESS;
            }
            input.append(text, static_cast<std::size_t>(length));
            for (auto end = input.find('\n'); end != std::string::npos; end = input.find('\n')) {
                carryOut(input.substr(0, end));
                input.erase(0, end + 1);
            }
        }
        const std::vector<IceConn> known = transports;
        for (std::size_t i = 0; i < known.size(); ++i) {
            if (waited[1 + static_cast<std::size_t>(doors) + i].revents != 0 && !listen(known[i])) {
                std::erase(transports, known[i]);
                const auto program = std::ranges::find_if(
                    programs, [&](const Program& lost) { return lost.transport == known[i]; });
                if (program != programs.end()) {
                    programs.erase(program);
                    say("left");
                }
            }
        }
        for (int i = 0; i < doors; ++i) {
            IceAcceptStatus accepted = IceAcceptFailure;
            if (waited[1 + static_cast<std::size_t>(i)].revents != 0) {
                if (const IceConn transport = IceAcceptConnection(door[i], &accepted)) {
                    transports.push_back(transport);
                }
            }
        }
    }
}
