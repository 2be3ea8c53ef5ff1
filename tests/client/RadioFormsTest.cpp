#include "client/RadioForms.h"

#include <gtest/gtest.h>

#include "heat/RadioTexts.h"

namespace {

using client::RadioForm;

/** The form with the numbers 1, 2, … in it. */
std::string numbered(const RadioForm& form) {
    std::string text;
    for (size_t i = 0; i < form.size(); ++i) {
        text.append(i == 0 ? "" : ",").append(form[i]) += ":" + std::to_string(i + 1);
    }
    return text;
}

}  // namespace

TEST(RadioForms, areThoseThatTheDaemonReadsToTheirEnd) {
    kelvo::WifiSignal wifi;
    EXPECT_EQ(kelvo::parseWifiSignal(numbered(client::kWifiForm), wifi), 6);
    EXPECT_EQ(kelvo::parseCellularSignal(numbered(client::kLteForm)).rsrp, 6);
    EXPECT_EQ(kelvo::parseCellularSignal(numbered(client::kNrForm)).csiRsrq, 8);
    EXPECT_EQ(kelvo::parseTraffic(numbered(client::kTrafficForm)).mobileRx, 4);
}

TEST(RadioForms, refuseEveryOtherText) {
    const std::string good = "transmit:1,receive:-2,mobileTx:3,mobileRx:4";
    EXPECT_TRUE(client::hasForm(good, client::kTrafficForm));
    for (const std::string& bad : {std::string(), good + ",more:5", good + " ", good.substr(1),
                                   good.substr(0, 40), good.substr(0, good.size() - 1),
                                   std::string("transmit:1.5,receive:2,mobileTx:3,mobileRx:4"),
                                   std::string("transmit 1,receive:2,mobileTx:3,mobileRx:4"),
                                   std::string("transmit:1;receive:2;mobileTx:3;mobileRx:4")}) {
        EXPECT_FALSE(client::hasForm(bad, client::kTrafficForm)) << bad;
    }
}
