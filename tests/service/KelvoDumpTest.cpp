#include <gmock/gmock.h>

#include "support/EngineTest.h"

namespace {

using testing::HasSubstr;
using testing::StartsWith;

class KelvoDumpTest : public EngineTest {
  protected:
    void start(const std::string& config) {
        addZone("skin", 40000);
        scenario.config.main = json(config);
        startPhone();
        log.clear();
    }
    std::string dump(const std::vector<std::string>& args, uint32_t uid = 1000) {
        log.clear();
        phone().perform(sim::Dump{args, uid});
        const std::string event = takeEvents().front();
        constexpr size_t kBefore = sizeof("{'event':'dump','text':'") - 1;
        return event.substr(kBefore, event.size() - kBefore - 2);
    }
    bool collects(int value) {
        return log.has("dump message.iValue:" + std::to_string(value)) &&
               log.has("MessageManager handling message:7 json:20260301");
    }
};

}  // namespace

TEST_F(KelvoDumpTest, reportsTheDaemonAndRollsUpTheDay) {
    start("{'config_version':'v9'}");
    EXPECT_THAT(dump({}), StartsWith("Git version:0.1.0\\nConfig version:v9\\nBANDROID_VERSION:33"
                                     "\\nBCOMPILE_PLATFORM:sys_mssi_64_cn_armv82\\nPlatform:SM8450"
                                     "\\nTemp:0.00\\nThrottlingLevel:0\\nTempDataCollection:\\n{"));
    EXPECT_TRUE(collects(0));
    EXPECT_TRUE(log.lines().size() > 2);
    EXPECT_THAT(dump({"config", "unclear"}), HasSubstr("DataCollector:"));
    EXPECT_TRUE(log.has("no shell temp fitting model"));
    EXPECT_TRUE(collects(1)) << "the word may stand inside another";
}

TEST_F(KelvoDumpTest, showsTheModelsInsteadWhenThereAreAny) {
    start("{'shell_temp_fitting_model':{'default':{'temp_model':{" + model("a", 0, "skin") +
          "}}}}");
    EXPECT_THAT(dump({"reconfigure", "clear"}), StartsWith("getKelvoConfig result:{"));
    EXPECT_FALSE(collects(0) || collects(1));
    EXPECT_THAT(dump({"clear", "config"}), StartsWith("Git version:"));
}

TEST_F(KelvoDumpTest, cutsTheTextAndTellsStrangersNothing) {
    start("{'config_version':'" + std::string(3000, 'v') + "'}");
    const std::string text = dump({});
    // Each newline takes two characters in an event.
    EXPECT_EQ(text.size() - static_cast<size_t>(std::count(text.begin(), text.end(), '\\')), 2048u);
    EXPECT_EQ(dump({"clear"}, 10050), "");
    EXPECT_FALSE(collects(1));
}
