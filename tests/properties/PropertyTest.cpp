#include "Property.h"

// The search itself: a property that fails now and then is found, and made as small as it goes.
TEST(Property, findsTheSmallestCaseThatFails) {
    const auto sumIsSmall = [](Draws& draws) {
        return draws.in(0, 1000) + draws.in(0, 1000) + draws.in(0, 1000) < 700;
    };
    const std::string found = counterexample(sumIsSmall, 100);
    EXPECT_NE(found.find("fails with 700 0 0 "), std::string::npos) << found;
}
