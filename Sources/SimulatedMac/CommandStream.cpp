#include "SimulatedMac/CommandStream.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace simulated {

void CommandStream::run(CommandContext& context, Instant now, const Answered& answered) {
    while (!lines_.empty() && !context.quit) {
        std::optional<std::string> answer;
        if (pending_) {
            answer = pending_->check(now);
        } else {
            CommandOutcome outcome = runCommand(context, lines_.front(), now);
            if (outcome.pending) {
                pending_ = std::move(outcome.pending);
                answer = pending_->check(now);
            } else {
                answer = std::move(outcome.answer);
            }
        }
        if (!answer) {
            return;
        }
        pending_.reset();
        const std::string line = std::move(lines_.front());
        lines_.pop_front();
        if (!answer->empty()) {
            answered(line, *answer);
        }
    }
}

void LineCutter::add(std::string_view bytes, const std::function<void(std::string)>& line) {
    constexpr std::size_t longest = 65536;
    while (!bytes.empty()) {
        const std::size_t end = bytes.find('\n');
        const std::string_view piece = bytes.substr(0, end);
        part_.append(piece.substr(0, longest - std::min(longest, part_.size())));
        bytes.remove_prefix(end == std::string_view::npos ? bytes.size() : end + 1);
        if (end == std::string_view::npos) {
            return;
        }
        line(*finish());
    }
}

std::optional<std::string> LineCutter::finish() {
    if (part_.ends_with('\r')) {
        part_.pop_back();
    }
    return std::exchange(part_, {});
}

} // namespace simulated
