#include "Fenwhirl/HelperClient/HandBackRule.h"

#include <map>

namespace HandBackRule {

HandBack decide(bool isHelperInstalled, std::span<const int> fansRead,
                std::span<const ConfiguredFan> configured) {
    if (!isHelperInstalled)
        return {};
    std::map<int, bool> isPinned;
    for (const int index : fansRead)
        isPinned[index] = false;
    for (const ConfiguredFan& fan : configured)
        isPinned[fan.index] = fan.isConstant;
    if (isPinned.empty())
        return {.scope = HandBack::Scope::allFans, .indices = {}};
    HandBack handBack = {.scope = HandBack::Scope::indices, .indices = {}};
    for (const auto& [index, pinned] : isPinned)
        if (!pinned)
            handBack.indices.push_back(index);
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
    for (const int index : handBack.indices)
        result.push_back({"auto", std::to_string(index)});
    return result;
}

} // namespace HandBackRule
