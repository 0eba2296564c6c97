// Runs the poll decisions and the model through the same random life. Shared by the test and the fuzz target.

#pragma once

#include "Fenwhirl/Monitoring/PollDecision.h"
#include "Fenwhirl/Monitoring/PollModel.h"

namespace Fenwhirl {

// Does what a poll does, with the real decisions.
class DecidedPoll {
public:
    PollModel::Outcome poll(const PollCircumstances& c) {
        const PollInput input{c.fans, c.temperatures, c.settings, c.protect, c.protectAt};
        PollDecision decision = decide(input, boosting_);
        const auto unread = handBacksOfUnreadFans(decision, input, sent_);
        decision.fanRequests.insert(decision.fanRequests.end(), unread.begin(), unread.end());
        const auto pace = decision.forbidsManualControl ? HandBackPace::urgent : HandBackPace::calm;
        boosting_ = decision.boosting;
        PollModel::Outcome outcome;
        outcome.primary = decision.primaryCelsius;
        outcome.boosting = decision.boosting;
        outcome.needsHelper = decision.wantsManualControl;
        const std::chrono::duration<double> now(c.nowSeconds);
        for (const FanRequest& request : decision.fanRequests) {
            if (request.suspended) {
                outcome.problem = "noTemperature";
            }
            if (const auto command = commandFor(request, sent_, c.helperInstalled, now, pace)) {
                outcome.commands.push_back(*command);
                if (!c.helperSucceeds) {
                    outcome.problem = "refused";
                }
                record(sent_, request, now, c.helperSucceeds);
            }
        }
        return outcome;
    }

private:
    SentTargets sent_;
    bool boosting_ = false;
};

// Whether decisions and model agree at every poll, and no poll breaks a safety rule.
inline bool agreesWithModel(ByteSource source, std::size_t polls) {
    PollCircumstances circumstances;
    PollModel model;
    DecidedPoll decided;
    for (std::size_t i = 0; i < polls; ++i) {
        nextCircumstances(circumstances, source);
        const auto expected = model.poll(circumstances);
        const auto actual = decided.poll(circumstances);
        if (actual.commands != expected.commands || actual.needsHelper != expected.needsHelper ||
            actual.problem != expected.problem || actual.primary != expected.primary ||
            actual.boosting != expected.boosting) {
            return false;
        }
        for (const auto& command : actual.commands) {
            if (command.front() == "set" && (!actual.primary || *actual.primary >= 92)) {
                return false;
            }
        }
    }
    return true;
}

} // namespace Fenwhirl
