// The start-up with the daemon's own threads.

#include <gmock/gmock.h>
#include <stdlib.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <functional>
#include <set>
#include <sstream>
#include <thread>

#include "core/KelvoMain.h"
#include "core/MessageManager.h"
#include "sim/ConfigStore.h"
#include "sim/DeviceTree.h"
#include "support/LogCapture.h"

using testing::HasSubstr;

namespace {

bool becomesTrue(const std::function<bool()>& condition) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end) {
            return false;
        }
        std::this_thread::yield();
    }
    return true;
}

std::set<std::string> threadNames() {
    std::set<std::string> names;
    for (const auto& task : std::filesystem::directory_iterator("/proc/self/task")) {
        std::string name;
        std::getline(std::ifstream(task.path() / "comm"), name);
        names.insert(name);
    }
    return names;
}

constexpr char kConfig[] = R"({"temp_threshold_down": [],
    "shell_temp_fitting_model": {"default": {"temp_model": {
        "front": {"index": 0, "thermal_zone": ["cpu"], "coefficient": [0.5, 15000]}}}}})";

}  // namespace

TEST(LiveStart, fitsAndHandlesMessages) {
    sim::DeviceTree tree(getenv("KELVO_ROOT"));
    tree.setProperty("persist.sys.kelvo.enable", "1");
    tree.addZone(0, "cpu", 40000);
    tree.setNode("/system_ext/etc/kelvo/kelvo.conf", kelvo::encryptConfig(kConfig));
    tree.setNode("/proc/shell-temp", "");
    LogCapture log;
    ASSERT_EQ(kelvo::kelvo_start(nullptr), 0);

    kelvo::KelvoMessage message;
    message.what = kelvo::MSG_NOTIFY_THERMAL_STATUS;
    message.iValue = 3;
    kelvo::MessageManager::getInstance().sendMessage(message);
    EXPECT_TRUE(becomesTrue([&] { return log.has("Notify thermal status:3"); }));
    // The poll goes on by itself after a message, and returns when one is not due yet.
    kelvo::MessageManager::getInstance().sendMessageDelayed(message, 3'600'000);
    EXPECT_TRUE(becomesTrue([&] { return log.has("MessageManager loop once"); }));
    EXPECT_TRUE(becomesTrue([&] { return tree.node("/proc/shell-temp") == "0 35000\n"; }));
    const std::set<std::string> names = threadNames();
    EXPECT_TRUE(names.contains("work"));
    EXPECT_TRUE(names.contains("st-fitting"));
}

TEST(Kelvod, leavesWithFailureWhenNotEnabled) {
    sim::DeviceTree tree(getenv("KELVO_ROOT"));
    const std::string output = tree.hostPath("/output");
    for (const char* value : {"", "0", "3", "11", "1 "}) {
        tree.setProperty("persist.sys.kelvo.enable", value);
        const int status = std::system((std::string(KELVOD) + " 2>" + output).c_str());
        EXPECT_EQ(WEXITSTATUS(status), 255) << value;
        std::ostringstream text;
        text << std::ifstream(output).rdbuf();
        EXPECT_THAT(text.str(), HasSubstr("kelvo version:(android:33)"));
        EXPECT_THAT(text.str(), HasSubstr("kelvo is not enabled"));
    }
}
