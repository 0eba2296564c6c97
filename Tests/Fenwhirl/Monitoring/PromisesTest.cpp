// Random lives of the real monitor on failing machines, checked only against the promises that the program
// makes:
//
// - From 92 °C on, and without a temperature, no fan is manual.
// - After the program has ended or has stopped responding, only fans at their own constant speed are manual.
// - With heat alerts on and the threshold reached, every fan is at its maximum or automatic.
// - In all other situations, when nothing is disturbed, the fans do what the user set.
//
// Nothing here knows what the monitor sends, or when. The machine's own state is checked after every step,
// and each promise is allowed the time that it takes to be fulfilled. A failure message gives the seed, the
// step, and the events that led to it.

#include "RandomLife.h"
#include "Support/Volume.h"

#include <gtest/gtest.h>

namespace Fenwhirl {

namespace {

class Promises : public testing::Test {
protected:
    static void keep(FaultKinds faults, int sample, int whole) {
        constexpr int stepsOfALife = 400;
        RandomLife::Judged judged;
        for (unsigned seed = 1; seed <= static_cast<unsigned>(rounds(sample, whole)); ++seed) {
            RandomLife life(seed, faults);
            const auto broken = life.live(stepsOfALife);
            ASSERT_FALSE(broken) << "seed " << seed << ": " << *broken;
            judged.emergencies += life.judged.emergencies;
            judged.ends += life.judged.ends;
            judged.protections += life.judged.protections;
            judged.calm += life.judged.calm;
        }
        // A promise that is rarely checked proves nothing.
        EXPECT_GT(judged.emergencies, 100);
        EXPECT_GT(judged.protections, 100);
        EXPECT_GT(judged.calm, 100);
        EXPECT_TRUE(!faults.ends || judged.ends > 100) << judged.ends;
    }
};

} // namespace

TEST_F(Promises, AreKeptOnMachinesThatWork) {
    keep({}, 8, 400);
}

TEST_F(Promises, AreKeptWhenWritesAreRefused) {
    keep({.refusals = true}, 10, 400);
}

TEST_F(Promises, AreKeptWhenKeysVanish) {
    keep({.vanishingKeys = true}, 20, 400);
}

TEST_F(Promises, AreKeptWhenOthersDriveTheFans) {
    keep({.strangers = true}, 10, 400);
}

TEST_F(Promises, AreKeptHoweverTheProgramEnds) {
    keep({.ends = true}, 15, 400);
}

TEST_F(Promises, AreKeptWhateverHappens) {
    keep({.refusals = true, .vanishingKeys = true, .strangers = true, .ends = true}, 30, 2500);
}

} // namespace Fenwhirl
