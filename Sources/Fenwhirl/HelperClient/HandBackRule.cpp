#include "Fenwhirl/HelperClient/HandBackRule.h"

#include <map>

namespace Fenwhirl::HandBackRule {

HandBack decide(bool isHelperInstalled, std::span<const int> fansRead,
                std::span<const ConfiguredFan> configured, std::span<const OwnedFan> owned) {
    enum class Fate { goesBack, isLeftAlone, isPinned };
    if (!isHelperInstalled) {
        return {};
    }
    std::map<int, Fate> fates;
    for (const int index : fansRead) {
        fates[index] = Fate::goesBack;
    }
    for (const ConfiguredFan& fan : configured) {
        fates[fan.index] = fan.isConstant ? Fate::isLeftAlone : Fate::goesBack;
    }
    for (const OwnedFan& fan : owned) {
        const auto known = fates.find(fan.index);
        const bool isConstant = known != fates.end() && known->second == Fate::isLeftAlone;
        fates[fan.index] = isConstant && fan.runsAsChosen ? Fate::isPinned : Fate::goesBack;
    }
    if (fates.empty()) {
        return {.scope = HandBack::Scope::allFans, .indices = {}};
    }
    HandBack handBack = {.scope = HandBack::Scope::indices, .indices = {}};
    for (const auto& [index, fate] : fates) {
        if (fate == Fate::goesBack) {
            handBack.indices.push_back(index);
        } else if (fate == Fate::isPinned) {
            handBack.pinned.push_back(index);
        }
    }
    return handBack;
}

std::vector<std::vector<std::string>> commands(const HandBack& handBack) {
    switch (handBack.scope) {
    case HandBack::Scope::nothing:
        return {};
    case HandBack::Scope::allFans:
        return {{"auto"}};
    case HandBack::Scope::indices:
        break;
    }
    std::vector<std::vector<std::string>> result;
    for (const int index : handBack.indices) {
        result.push_back({"auto", std::to_string(index)});
    }
    return result;
}

} // namespace Fenwhirl::HandBackRule
