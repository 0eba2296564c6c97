#include "Fenwhirl/Monitoring/PollLife.h"

#include <gtest/gtest.h>
#include <random>

namespace Fenwhirl {

namespace {

std::vector<std::uint8_t> randomBytes(std::mt19937& generator, std::size_t count) {
    std::vector<std::uint8_t> bytes(count);
    for (std::uint8_t& byte : bytes) {
        byte = static_cast<std::uint8_t>(generator() >> 11U);
    }
    return bytes;
}

} // namespace

TEST(PollModel, AgreesWithTheDecisionsOverTenThousandRandomLives) {
    for (unsigned seed = 0; seed < 10'000; ++seed) {
        std::mt19937 generator(seed);
        const auto bytes = randomBytes(generator, 1200);
        ASSERT_TRUE(agreesWithModel(ByteSource(bytes), 60)) << "seed " << seed;
    }
}

TEST(PollModel, RandomLivesReachEveryRule) {
    int sets = 0;
    int autos = 0;
    int boosts = 0;
    int emergencies = 0;
    int suspensions = 0;
    int refusals = 0;
    for (unsigned seed = 0; seed < 500; ++seed) {
        std::mt19937 generator(seed);
        const auto bytes = randomBytes(generator, 1200);
        ByteSource source(bytes);
        PollCircumstances circumstances;
        DecidedPoll decided;
        for (int i = 0; i < 60; ++i) {
            nextCircumstances(circumstances, source);
            const auto outcome = decided.poll(circumstances);
            for (const auto& command : outcome.commands) {
                (command.front() == "set" ? sets : autos) += 1;
            }
            boosts += outcome.boosting ? 1 : 0;
            emergencies += outcome.primary && *outcome.primary >= 92 ? 1 : 0;
            suspensions += outcome.problem == "noTemperature" ? 1 : 0;
            refusals += outcome.problem == "refused" ? 1 : 0;
        }
    }
    for (const int count : {sets, autos, boosts, emergencies, suspensions, refusals}) {
        EXPECT_GT(count, 100) << sets << ' ' << autos << ' ' << boosts << ' ' << emergencies << ' '
                              << suspensions << ' ' << refusals;
    }
}

} // namespace Fenwhirl
