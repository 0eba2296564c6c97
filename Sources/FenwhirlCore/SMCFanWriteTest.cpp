// The fan write test: drives one fan for six seconds and reports what the controller did.

#include "FenwhirlCore/NumberText.h"
#include "FenwhirlCore/SMC.h"

#include <algorithm>
#include <unistd.h>

namespace Fenwhirl {

using NumberText::wholeOrQuestionMark;

std::string SMC::fanWriteTest() {
    return fanWriteTest(geteuid());
}

std::string SMC::fanWriteTest(unsigned effectiveUserId) {
    if (effectiveUserId != 0) {
        return "Test impossible : droits administrateur absents.";
    }
    const auto fans = readFans();
    if (fans.empty()) {
        return "Aucun ventilateur sur ce Mac.";
    }

    const FanReading& fan = fans.front();
    const double target = fan.minRPM + (fan.maxRPM - fan.minRPM) * 0.3;
    const std::string number = std::to_string(fan.index);
    const std::string actualKey = "F" + number + "Ac";
    const std::string targetKey = "F" + number + "Tg";
    std::string text = "Ventilateur " + number + " : minimum " + wholeOrQuestionMark(fan.minRPM) +
                       ", maximum " + wholeOrQuestionMark(fan.maxRPM) + ", objectif du test " +
                       wholeOrQuestionMark(target);

    text.append("\nÉcriture acceptée : ").append(setFanSpeed(fan.index, target) ? "oui" : "non");
    constexpr int seconds = 6;
    for (int second = 1; second <= seconds; ++second) {
        transport_->wait(std::chrono::seconds(1));
        text.append("\nSeconde ").append(std::to_string(second));
        text.append(" : vitesse réelle ").append(wholeOrQuestionMark(readValue(actualKey)));
        text.append(", cible ").append(wholeOrQuestionMark(readValue(targetKey)));
    }

    // Even if the count can no longer be read, the fans that were found above must not stay manual.
    const std::int64_t count = std::max<std::int64_t>(usableFanCount().value_or(0), fans.back().index + 1);
    bool isAutomatic = !transport_->isDead();
    for (std::int64_t index = 0; index < count && !transport_->isDead(); ++index) {
        isAutomatic = handBack(index, Unusable::carryOn) && isAutomatic;
    }
    transport_->wait(std::chrono::seconds(2));
    text.append("\nRetour en automatique : ").append(isAutomatic ? "oui" : "non");
    text.append(", cible après ").append(wholeOrQuestionMark(readValue(targetKey)));
    return text;
}

} // namespace Fenwhirl
