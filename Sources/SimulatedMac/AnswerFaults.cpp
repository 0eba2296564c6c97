#include "SimulatedMac/AnswerFaults.h"

namespace simulated {

void AnswerFaults::set(const AnswerFault& fault) {
    fault_ = fault;
    matched_ = 0;
}

AnswerFault AnswerFaults::decide(const Fenwhirl::SMCParam& request) {
    if (fault_.kind == FaultKind::none || (fault_.key && *fault_.key != request.key) ||
        (fault_.command && *fault_.command != request.data8)) {
        return {};
    }
    const std::uint64_t hit = ++matched_;
    if (hit <= fault_.after || (fault_.times && hit - fault_.after > *fault_.times)) {
        return {};
    }
    return fault_;
}

std::string faultText(const AnswerFault& fault) {
    const std::string argument = std::to_string(fault.argument);
    switch (fault.kind) {
    case FaultKind::none:
        return "none";
    case FaultKind::silence:
        return "silence";
    case FaultKind::hangUp:
        return "hangup";
    case FaultKind::wrongLength:
        return "length:" + argument;
    case FaultKind::kernel:
        return "kernel:" + argument;
    case FaultKind::result:
        return "result:" + argument;
    case FaultKind::delay:
        return "delay:" + argument;
    }
    return "none";
}

} // namespace simulated
