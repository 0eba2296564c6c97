#include "Fenwhirl/Platform/Processes/ProcessListingTool.h"
#include "Fenwhirl/Platform/Processes/ProcessShareLinux.h"
#include "Fenwhirl/Platform/Processes/ProcessStatLinux.h"
#include "Fenwhirl/Platform/Processes/ProcessTable.h"

#include <algorithm>
#include <charconv>
#include <csignal>
#include <filesystem>
#include <string>
#include <string_view>
#include <sys/syscall.h>
#include <system_error>
#include <unistd.h>
#include <utility>
#include <vector>

namespace Fenwhirl {

namespace {

std::uint64_t ticksPerSecond() {
    const long ticks = sysconf(_SC_CLK_TCK);
    return ticks > 0 ? static_cast<std::uint64_t>(ticks) : 100;
}

// One line of `ps`: identifier, resident KiB, path. The columns before the path contain no blanks.
struct ToolLine {
    std::int32_t pid;
    std::string_view residentKiB;
    std::string_view path;
};

std::string_view takeWord(std::string_view& rest) {
    rest.remove_prefix(std::min(rest.find_first_not_of(' '), rest.size()));
    const std::string_view word = rest.substr(0, rest.find(' '));
    rest.remove_prefix(word.size());
    return word;
}

std::optional<std::int32_t> parsePid(std::string_view text) {
    std::int32_t pid = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), pid);
    const bool whole = error == std::errc() && end == text.data() + text.size();
    return whole ? std::optional(pid) : std::nullopt;
}

std::optional<ToolLine> parseToolLine(std::string_view line) {
    const std::string_view pidText = takeWord(line);
    const std::string_view residentKiB = takeWord(line);
    line.remove_prefix(std::min(line.find_first_not_of(' '), line.size()));
    const std::optional<std::int32_t> pid = parsePid(pidText);
    if (!pid || line.empty()) {
        return std::nullopt;
    }
    return ToolLine{*pid, residentKiB, line};
}

std::vector<std::int32_t> allProcesses() {
    std::vector<std::int32_t> pids;
    std::error_code failure;
    std::filesystem::directory_iterator entry("/proc", failure);
    for (; !failure && entry != std::filesystem::directory_iterator(); entry.increment(failure)) {
        if (const std::optional<std::int32_t> pid = parsePid(entry->path().filename().native())) {
            pids.push_back(*pid);
        }
    }
    return pids;
}

// The path as the kernel has it. In its neutral language the tool prints a question mark for every byte of a
// letter that is not ASCII, so a path with question marks is read from the kernel instead. Control
// characters, which could forge lines, are replaced by question marks.
std::string completePath(std::int32_t pid, std::string_view printed) {
    if (printed.find('?') == std::string_view::npos) {
        return std::string(printed);
    }
    std::error_code failure;
    std::string path =
        std::filesystem::read_symlink("/proc/" + std::to_string(pid) + "/exe", failure).native();
    if (failure || path.empty()) {
        return std::string(printed);
    }
    const auto isControl = [](char byte) {
        const auto code = static_cast<unsigned char>(byte);
        return code < 0x20 || code == 0x7F;
    };
    std::replace_if(path.begin(), path.end(), isControl, '?');
    return path;
}

// The path as the user knows it. The tool shows "-" where the system hides the path (kernel threads, other
// users' processes). Then the process's name takes its place, up to a slash, because kernel workers have
// names such as "kworker/0:1-events". The suffix that marks a running executable as replaced is removed.
std::string displayPath(std::string_view path, std::string_view name) {
    constexpr std::string_view replaced = " (deleted)";
    if (path != "-") {
        if (path.size() > replaced.size() && path.substr(path.size() - replaced.size()) == replaced) {
            path.remove_suffix(replaced.size());
        }
        return std::string(path);
    }
    std::string shown(name.substr(0, name.find('/')));
    std::replace(shown.begin(), shown.end(), '\n', '?');
    return shown.empty() ? std::string("?") : shown;
}

void appendPercent(std::string& text, std::uint64_t hundredths) {
    text += std::to_string(hundredths / 100);
    text += '.';
    text += static_cast<char>('0' + hundredths / 10 % 10);
    text += static_cast<char>('0' + hundredths % 10);
}

class ProcessTableLinux final : public ProcessTable {
public:
    explicit ProcessTableLinux(ProcessTableSettings settings)
        : settings_(std::move(settings))
        , share_(ticksPerSecond()) {}

    std::optional<QByteArray> listing() override {
        if (!share_.hasRecentSample(std::chrono::steady_clock::now())) {
            sampleTimesOnly();
            if (!cancelled_.waitFor(settings_.firstInterval)) {
                return std::nullopt;
            }
        }
        const std::optional<QByteArray> tool =
            runListingTool(settings_.tool, {"-A", "-o", "pid=,rss=,exe="}, settings_.limit, cancelled_);
        if (!tool) {
            return std::nullopt;
        }
        return withShares({tool->constData(), static_cast<std::size_t>(tool->size())});
    }

    std::optional<ProcessStart> startWhenListed(std::int32_t pid) const override {
        return share_.startInLastSample(pid);
    }

    void cancel() override { cancelled_.cancel(); }

private:
    void sampleTimesOnly() {
        share_.beginSample(std::chrono::steady_clock::now());
        for (const std::int32_t pid : allProcesses()) {
            if (const std::optional<ProcessStat> stat = readProcessStat(pid)) {
                (void)share_.add(pid, stat->startTicks, stat->ticks);
            }
        }
    }

    QByteArray withShares(std::string_view tool) {
        share_.beginSample(std::chrono::steady_clock::now());
        std::string listing;
        listing.reserve(tool.size() * 2);
        while (!tool.empty()) {
            const std::string_view line = tool.substr(0, tool.find('\n'));
            tool.remove_prefix(std::min(line.size() + 1, tool.size()));
            const std::optional<ToolLine> process = parseToolLine(line);
            // Skips processes that have ended since, such as the tool itself.
            const std::optional<ProcessStat> stat =
                process ? readProcessStat(process->pid) : std::optional<ProcessStat>();
            if (!stat) {
                continue;
            }
            listing += std::to_string(process->pid);
            listing += ' ';
            appendPercent(listing, share_.add(process->pid, stat->startTicks, stat->ticks));
            listing += ' ';
            listing += process->residentKiB;
            listing += ' ';
            listing += displayPath(completePath(process->pid, process->path), stat->name);
            listing += '\n';
        }
        return {listing.data(), static_cast<qsizetype>(listing.size())};
    }

    ProcessTableSettings settings_;
    ProcessShare share_;
    Cancellation cancelled_;
};

} // namespace

std::unique_ptr<ProcessTable> openProcessTable(ProcessTableSettings settings) {
    return std::make_unique<ProcessTableLinux>(std::move(settings));
}

std::optional<ProcessStart> startOfProcess(std::int32_t pid) {
    if (pid <= 0) {
        return std::nullopt;
    }
    const std::optional<ProcessStat> stat = readProcessStat(pid);
    return stat ? std::optional<ProcessStart>(stat->startTicks) : std::nullopt;
}

void signalProcess(std::int32_t pid, ProcessStart start, int signal) {
    if (pid <= 0 || pid == getpid()) {
        return;
    }
    // The descriptor refers to the process that has the identifier now. Once its start has been checked, the
    // signal cannot reach a later process with the same identifier.
    // (These are raw system calls because the C library's header for the two functions cannot be used from
    // C++.)
    const auto process = static_cast<int>(syscall(SYS_pidfd_open, pid, 0));
    if (process < 0) {
        return;
    }
    if (startOfProcess(pid) == start) {
        (void)syscall(SYS_pidfd_send_signal, process, signal, nullptr, 0);
    }
    close(process);
}

int activeProcessorCount() {
    return static_cast<int>(std::clamp(sysconf(_SC_NPROCESSORS_ONLN), 1L, 1L << 20));
}

} // namespace Fenwhirl
