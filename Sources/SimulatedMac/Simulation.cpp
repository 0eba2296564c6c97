#include "SimulatedMac/Simulation.h"

#include "SimulatedMac/HeatChoice.h"
#include "SimulatedMac/StateText.h"
#include "SimulatedMac/TextParsing.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cmath>
#include <csignal>
#include <ctime>
#include <fcntl.h>
#include <optional>
#include <span>
#include <string_view>
#include <sys/epoll.h>
#include <sys/resource.h>
#include <sys/signalfd.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace simulated {

namespace {

constexpr std::uint64_t inputTag = 1;
constexpr std::uint64_t signalTag = 2;

constexpr double waitingStepSeconds = 0.02; // how often a waiting command is checked
constexpr double paintSeconds = 1;

double clockSeconds(clockid_t clock) {
    timespec time{};
    ::clock_gettime(clock, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

Instant present() {
    return {.steadySeconds = clockSeconds(CLOCK_MONOTONIC), .wallSeconds = clockSeconds(CLOCK_REALTIME)};
}

// A signal that was ignored when this program started stays ignored. Its parent did that on purpose, for
// example because Ctrl-C is meant for another program in the same terminal.
bool isIgnored(int signal) {
    struct sigaction action {};

    return ::sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

// Every client takes a descriptor. The usual soft limit of 1024 exists only for programs that use select.
void raiseDescriptorLimit() {
    rlimit limit{};
    if (::getrlimit(RLIMIT_NOFILE, &limit) == 0) {
        limit.rlim_cur = limit.rlim_max;
        ::setrlimit(RLIMIT_NOFILE, &limit);
    }
}

} // namespace

std::unique_ptr<Simulation> Simulation::make(const Options& options, std::string& error) {
    const auto table = findMachine(options.machine);
    if (!table) {
        error = "there is no machine \"" + options.machine + "\"; --list names those there are";
        return nullptr;
    }
    std::unique_ptr<Simulation> simulation(new Simulation(options, *table));
    return simulation->prepare(error) ? std::move(simulation) : nullptr;
}

Simulation::Simulation(Options options, const MachineTable& table)
    : options_(std::move(options))
    , mac_(table, present()) {}

bool Simulation::prepare(std::string& error) {
    const std::vector<std::string_view> heat(options_.heat.begin(), options_.heat.end());
    auto source = makeHeatSource(heat, mac_, error);
    if (!source) {
        error = "--heat: " + error;
        return false;
    }
    mac_.setHeatSource(std::move(source), present());
    mac_.setSpeed(options_.speed, present());
    if (options_.script) {
        const auto text = readTextFile(*options_.script);
        if (!text) {
            error = *options_.script + " cannot be read";
            return false;
        }
        for (const std::string_view line : splitFields(*text, '\n')) {
            script_.add(std::string(line.substr(0, line.find('\r'))));
        }
    }
    if (options_.writeLog) {
        writeLog_ = ::open(options_.writeLog->c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0644);
        if (writeLog_ < 0) {
            error = *options_.writeLog + " cannot be written";
            return false;
        }
        mac_.onWrite = [this](const WriteEntry& entry) { logWrite(entry); };
    }

    raiseDescriptorLimit();
    place_ = ServiceSocket::claim(error);
    if (!place_) {
        return false;
    }
    sigset_t ending;
    ::sigemptyset(&ending);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT}) {
        if (!isIgnored(signal)) {
            ::sigaddset(&ending, signal);
        }
    }
    ::sigprocmask(SIG_BLOCK, &ending, nullptr);
    // Writing to a pipe without a reader must fail instead of ending the program, and using the terminal as a
    // background job must not stop it.
    for (const int signal : {SIGPIPE, SIGTTIN, SIGTTOU}) {
        (void)std::signal(signal, SIG_IGN); // NOLINT(cert-err33-c): cannot fail for these
    }
    epoll_ = ::epoll_create1(EPOLL_CLOEXEC);
    signals_ = ::signalfd(-1, &ending, SFD_CLOEXEC | SFD_NONBLOCK);
    server_ = std::make_unique<SMCServer>(place_->listener(), epoll_, mac_, faults_);
    context_ = std::make_unique<CommandContext>(
        CommandContext{.mac = mac_, .faults = faults_, .counters = server_->counters()});
    if (epoll_ < 0 || signals_ < 0 || !watch(signals_, signalTag) || !server_->start()) {
        error = "the system refuses what the event loop needs";
        return false;
    }
    return true;
}

Simulation::~Simulation() {
    // In this order, because each object refers to the next one.
    context_.reset();
    server_.reset();
    place_.reset();
    for (const int file : {epoll_, signals_, writeLog_}) {
        if (file >= 0) {
            ::close(file);
        }
    }
}

bool Simulation::watch(int file, std::uint64_t tag) {
    epoll_event event{.events = EPOLLIN, .data = {.u64 = tag}};
    return ::epoll_ctl(epoll_, EPOLL_CTL_ADD, file, &event) == 0;
}

void Simulation::watchInput(bool watched) {
    if (watched == inputWatched_) {
        return;
    }
    if (!watched) {
        ::epoll_ctl(epoll_, EPOLL_CTL_DEL, STDIN_FILENO, nullptr);
        inputWatched_ = false;
        return;
    }
    inputWatched_ = watch(STDIN_FILENO, inputTag);
    if (!inputWatched_) {
        // epoll does not accept a regular file or /dev/null, and need not: it can be read to its end at once.
        while (inputOpen_) {
            readInput();
        }
    }
}

int Simulation::run() {
    // A script's settings are in force before the first client is served.
    runCommands(present());
    terminal_.print("ready " + mac_.machineName() + " at " + ServiceSocket::socketPath);
    if (terminal_.isLive()) {
        terminal_.print("Commands are welcome; help lists them, quit or Ctrl-C ends.");
    }
    std::array<epoll_event, 64> events{};
    while (!context_->quit) {
        Instant now = present();
        if (inputOpen_) {
            watchInput(Terminal::mayRead());
        }
        runCommands(now);
        if (terminal_.isLive() && now.steadySeconds - paintedSeconds_ >= paintSeconds) {
            mac_.catchUp(now);
            terminal_.paint(liveLine(*context_));
            paintedSeconds_ = now.steadySeconds;
        }
        if (context_->quit || (!inputOpen_ && options_.quitAtEndOfInput && !input_.isWaiting())) {
            break;
        }
        const int count =
            ::epoll_wait(epoll_, events.data(), static_cast<int>(events.size()), timeoutMilliseconds(now));
        now = present();
        for (const epoll_event& event :
             std::span(events).first(static_cast<std::size_t>(std::max(0, count)))) {
            handle(event.data.u64, event.events, now);
        }
        server_->sendDue(now);
    }
    return 0;
}

int Simulation::timeoutMilliseconds(Instant now) const {
    std::optional<double> next = server_->nextDueSeconds();
    const auto consider = [&](double seconds) { next = std::min(next.value_or(seconds), seconds); };
    if (input_.isWaiting() || script_.isWaiting()) {
        consider(now.steadySeconds + waitingStepSeconds);
    }
    if (terminal_.isLive()) {
        consider(paintedSeconds_ + paintSeconds);
    }
    if (!next) {
        return -1;
    }
    // Rounded up, because a timeout that ends too early would make the loop spin.
    return static_cast<int>(
        std::max(0.0, std::min(3'600'000.0, std::ceil((*next - now.steadySeconds) * 1000))));
}

void Simulation::handle(std::uint64_t tag, std::uint32_t events, Instant now) {
    if ((tag & SMCServer::tagBit) != 0) {
        server_->handleEvent(tag, events, now);
    } else if (tag == inputTag) {
        readInput();
    } else {
        context_->quit = true;
    }
}

void Simulation::readInput() {
    std::array<char, 4096> buffer; // NOLINT(cppcoreguidelines-pro-type-member-init)
    const ssize_t length = ::read(STDIN_FILENO, buffer.data(), buffer.size());
    const auto add = [this](std::string line) { input_.add(std::move(line)); };
    if (length > 0) {
        lines_.add({buffer.data(), static_cast<std::size_t>(length)}, add);
        return;
    }
    if (length < 0 && (errno == EINTR || errno == EAGAIN)) {
        return;
    }
    if (length < 0 && errno == EIO && ::isatty(STDIN_FILENO) == 1) {
        watchInput(false); // in the background; tried again in the next round of the loop
        return;
    }
    if (auto rest = lines_.finish(); rest && !rest->empty()) {
        input_.add(*rest);
    }
    watchInput(false);
    inputOpen_ = false;
}

void Simulation::runCommands(Instant now) {
    script_.run(*context_, now, [this](const std::string& line, const std::string& answer) {
        if (answer.starts_with("error:")) {
            terminal_.print("script: " + line + ": " + answer);
        }
    });
    input_.run(*context_, now, [this](const std::string& /*line*/, const std::string& answer) {
        terminal_.print(answer);
        paintedSeconds_ = 0; // repaints the live line at once
    });
}

void Simulation::logWrite(const WriteEntry& entry) const {
    const std::string line = writeEntryText(entry) + "\n";
    // One call per line, so that lines of several programs do not mix. Errors are ignored: a full disk must
    // not stop the SMC.
    [[maybe_unused]] const ssize_t written = ::write(writeLog_, line.data(), line.size());
}

} // namespace simulated
