#include "links/ChargerProxyService.h"

#include <limits>

#include "support/EngineTest.h"

namespace {

struct ChargerProxyServiceTest : EngineTest {
    static int32_t current() { return ChargerProxyService::getInstance().getBatteryCurrentNow(); }
};

}  // namespace

TEST_F(ChargerProxyServiceTest, connectsOnceAndAgainAfterADeath) {
    const char* const kLinked = "Link to death notification successful";
    startWithoutTemp();
    for (const int32_t value :
         {0, -1500, std::numeric_limits<int32_t>::min(), std::numeric_limits<int32_t>::max()}) {
        phone().perform(sim::BatteryCurrent{value});
        EXPECT_EQ(current(), value);
    }
    EXPECT_EQ(log.count(kLinked), 1u);
    setService("charger", false);
    EXPECT_EQ(log.errors("ChargerProxyService just died"), 1u);
    EXPECT_EQ(current(), -1);
    setService("charger", true);
    EXPECT_EQ(current(), std::numeric_limits<int32_t>::max()) << "the value survives";
    EXPECT_EQ(log.count(kLinked), 2u);
}
