// The daemon's engines with all their threads in one process, and whatever can happen to them at
// once. KELVO_STRESS_OPERATIONS and KELVO_STRESS_SEED change a run; ./test --stress makes a long
// one under the thread sanitizer.

#include <android/log.h>
#include <binder/IServiceManager.h>
#include <binder_linux/LocalServiceManager.h>
#include <gmock/gmock.h>
#include <poll.h>

#include <array>
#include <condition_variable>
#include <iostream>
#include <mutex>
#include <random>
#include <thread>

#include "core/DataCollector.h"
#include "core/KelvoMain.h"
#include "core/KelvoMessages.h"
#include "core/MessageManager.h"
#include "sim/framework/FrameworkClient.h"
#include "sim/scenario/ScenarioParser.h"
#include "sim/services/PhoneServices.h"
#include "sim/tree/PhoneTree.h"
#include "sim/tree/ShellTempNode.h"
#include "support/Await.h"
#include "support/Files.h"

namespace {

using kelvo::MessageManager;
using std::chrono::seconds;
using std::chrono::steady_clock;

constexpr size_t kThreads = 12;
constexpr int kDefaultOperations = 20000;
constexpr seconds kLimit(60);  // without any progress

int numberFrom(const char* name, int otherwise) {
    const char* const text = getenv(name);
    return text == nullptr ? otherwise : std::stoi(text);
}

/** How often lines with these words were logged: without one a run did not try what it should. */
struct Seen {
    const char* words;
    std::atomic<int64_t> count = 0;
};
Seen sSeen[] = {{"Reload global config"},
                {"load light lamp fitting model triggered"},
                {"binder(uid:"},  // of a listener that died
                {"does not answer, it is passed over"},
                {"does not answer, it counts as absent"},
                {"perf service died"},
                {"switch charge state"},
                {"heatpc getCompentsHeatDetailInfo:"},
                {"readSamples loop thread"}};
std::atomic<int> sListeners = -1;      // as said by the last fan-out of a status
constexpr int32_t kLastStatus = 1000;  // posted behind all that the operations posted
std::atomic<bool> sHandledAll = false;

void count(const __android_logger_data*, const char* line) {
    for (Seen& seen : sSeen) {
        seen.count += strstr(line, seen.words) != nullptr ? 1 : 0;
    }
    int listeners = 0;
    if (sscanf(line, "Entering notifyCallback, binder clients size %d", &listeners) == 1) {
        sListeners = listeners;
    }
    int32_t status = 0;
    if (sscanf(line, "Notify thermal status:%d", &status) == 1 && status == kLastStatus) {
        sHandledAll = true;
    }
}

/** Hangs when some calls are ordered to. */
void hang(std::atomic<int>& ordered) {
    if (ordered > 0 && ordered-- > 0) {
        std::this_thread::sleep_for(seconds(2));  // longer than the daemon is patient
    }
}

/** The phone around the daemon. */
class World {
  public:
    World()
          : scenario(sim::loadScenario(KELVO_EXAMPLES "/charge/scenario.json")),
            tree(getenv("KELVO_ROOT")),
            node(tree),
            phone(tree, scenario, [this](bool present) { node.setPresent(present); }),
            services(scenario, sim::PhoneServices::launchHere,
                     [this](const sim::Event&) { hang(hangingServices); }) {
        phone.build();
        for (const std::string& name : services.declaredInstances()) {
            android::installLocalServiceManager()->declareService(android::String16(name.c_str()));
        }
        services.start();
    }

    std::mutex mutex;  // guards what follows up to the services
    const sim::Scenario scenario;
    sim::DeviceTree tree;
    sim::ShellTempNode node;
    sim::PhoneTree phone;
    std::atomic<int> hangingServices = 0;  // calls of them that are to hang
    std::atomic<int> hangingListeners = 0;
    sim::PhoneServices services;
};

/** A thread's own draws, listeners and calls. */
class Client {
  public:
    Client(World& world, size_t number, uint32_t seed)
          : mUid(number % 3 == 0 ? 1000U : 10000U + static_cast<uint32_t>(number)),
            mRandom(seed + static_cast<uint32_t>(number)),
            framework([&world](const sim::Event& event) {
                if (event.name.starts_with("notify_")) {
                    hang(world.hangingListeners);
                }
            }) {}

    int32_t below(int32_t end) {
        return std::uniform_int_distribution<int32_t>(0, end - 1)(mRandom);
    }
    template <typename T>
    T oneOf(std::initializer_list<T> values) {
        return values.begin()[below(static_cast<int32_t>(values.size()))];
    }
    std::string listener() { return std::string(1, static_cast<char>('a' + below(4))); }
    void call(uint32_t code, std::vector<sim::Argument> args = {}) {
        framework.perform(sim::Transact{code, std::move(args), std::nullopt, 1000});
    }
    static void awaitRoom() {
        while (!MessageManager::getInstance().hasRoom()) {
            std::this_thread::yield();
        }
    }
    /** For calls that are refused while too many messages wait. */
    template <typename Deed>
    void post(const Deed& deed) {
        awaitRoom();
        framework.perform(deed);
    }
    void post(uint32_t code, int32_t value) {
        post(sim::Transact{code, {value}, std::nullopt, 1000});
    }
    void listen() { post(sim::Listen{listener(), mUid}); }

  private:
    const uint32_t mUid;
    std::mt19937 mRandom;

  public:
    sim::FrameworkClient framework;
};

void changePhone(World& world, Client& client) {
    const std::lock_guard lock(world.mutex);
    const int32_t value = client.below(20);
    const sim::Deed deeds[] = {sim::Health{value % 2 == 0, value % 3 == 0, value > 10},
                               sim::BatteryCurrent{100 * value},
                               sim::TaskStats{"1\t1\t" + std::to_string(value) + "000000\tx\n"},
                               sim::Frames{value},
                               sim::Usage{{{0, 3600, value}}, {}, {}, {{0, 3600, 10 * value}}}};
    const auto which = static_cast<size_t>(client.below(8));
    if (which < std::size(deeds)) {
        return world.services.perform(deeds[which]);
    }
    const auto zone = client.below(static_cast<int32_t>(world.scenario.zones.size()));
    const std::optional<int32_t> temp = 30000 + 1000 * value;
    world.phone.apply(sim::ZoneChange{zone, value == 19 ? std::nullopt : temp});
    world.phone.apply(sim::SetProperties{{{"persist.sys.kelvo.dc", value > 3 ? "1" : "0"}}});
    world.node.takeLines([](std::string_view) {});
}

void handOverBigData(World&, Client& client) {
    if (client.below(2) == 0) {
        return client.call(10);
    }
    kelvo::DataCollector::getInstance().reset(client.below(3));
    Client::awaitRoom();
    MessageManager::getInstance().sendMessage(
            kelvo::messages::collectBigData(std::to_string(client.below(3)), client.below(2) == 0));
}

/** All test commands; for most of the time no stop, without which two passes make a sample. */
void monitorHeat(World&, Client& client) {
    const bool calm = steady_clock::now().time_since_epoch() / seconds(1) % 16 < 12;
    const int32_t command = 1 + client.below(7);
    client.call(102, {calm && command == 2 ? 1 : command});
}

struct Operation {
    const char* name;
    int weight;
    void (*perform)(World& world, Client& client);
};
const Operation kOperations[] = {
        {"query", 4000,
         [](World&, Client& c) {
             c.call(c.oneOf({4U, 5U, 9U, 16U, 17U, 20U, 21U, 22U, 23U, 25U, 101U, 106U}));
         }},
        {"scene", 800,
         [](World&, Client& c) {
             c.post(c.oneOf({19U, 24U}), c.below(3));
         }},
        {"flash light", 50,
         [](World&, Client&) {
             MessageManager::getInstance().sendMessage(kelvo::messages::loadFlashScene());
         }},
        {"package", 600,
         [](World&, Client& c) { c.call(18, {"app" + std::to_string(c.below(9))}); }},
        {"screen", 200, [](World&, Client& c) { c.call(12, {c.below(2)}); }},
        {"radio", 300,
         [](World&, Client& c) {
             c.call(c.oneOf({103U, 104U, 105U}), {std::string("rssi:-60,mobileTx:5,transmit:1")});
         }},
        {"status", 500, [](World&, Client& c) { c.post(15, c.below(6)); }},
        {"thresholds", 100,
         [](World&, Client& c) {
             c.call(6, {21, std::vector<int32_t>(21, 30 + c.below(9)), 0, 0});
         }},
        {"reload", 30,
         [](World&, Client&) {
             MessageManager::getInstance().sendMessage(kelvo::messages::reloadConfig());
         }},
        {"listen", 700, [](World&, Client& c) { c.listen(); }},
        {"unlisten", 300, [](World&, Client& c) { c.post(sim::Unlisten{c.listener()}); }},
        {"dying listener", 200,
         [](World&, Client& c) { c.framework.perform(sim::ListenerDies{c.listener()}); }},
        {"failing listener", 50,
         [](World&, Client& c) {
             c.framework.perform(sim::ListenerFails{c.listener(), c.oneOf({3U, 4U, 5U}), 1});
         }},
        {"monitoring", 500, monitorHeat},
        {"big data", 400, handOverBigData},
        {"dump", 50,
         [](World&, Client& c) {
             c.framework.perform(sim::Dump{{c.oneOf({"", "config", "clear"})}});
         }},
        {"service", 300,
         [](World& world, Client& c) {
             const std::string name =
                     c.oneOf({"health", "performance", "charger", "panel", "frames", "quorix"});
             const std::lock_guard lock(world.mutex);
             world.services.perform(sim::ServiceState{name, c.below(3) != 0});
         }},
        {"phone", 914, changePhone},
        {"hanging service", 3, [](World& world, Client& c) { world.hangingServices = c.below(4); }},
        {"hanging listener", 3,
         [](World& world, Client& c) { world.hangingListeners = c.below(4); }},
};

/** Performs operations at random on many threads, and ends the process when they stand still. */
class Stress {
  public:
    Stress(World& world, int operations, uint32_t seed)
          : mWorld(world), mEach(operations / static_cast<int>(kThreads)) {
        for (size_t i = 0; i < kThreads; ++i) {
            mClients.push_back(std::make_unique<Client>(world, i, seed));
        }
    }

    void perform() {
        std::vector<std::thread> threads;
        for (size_t i = 0; i < kThreads; ++i) {
            threads.emplace_back([this, i] { work(i); });
        }
        watch();
        std::for_each(threads.begin(), threads.end(), std::mem_fn(&std::thread::join));
    }
    void leaveListeners() {
        for (const auto& client : mClients) {
            for (const char* const id : {"a", "b", "c", "d"}) {
                client->post(sim::Unlisten{id});
            }
        }
    }

  private:
    void work(size_t number) {
        std::vector<int> weights;
        for (const Operation& operation : kOperations) {
            weights.push_back(operation.weight);
        }
        std::mt19937 random(static_cast<uint32_t>(mClients[number]->below(1 << 30)));
        std::discrete_distribution<size_t> draw(weights.begin(), weights.end());
        for (int i = 0; i < mEach; ++i) {
            const Operation& operation = kOperations[draw(random)];
            mAt[number] = operation.name;
            operation.perform(mWorld, *mClients[number]);
            ++mDone;
        }
        const std::lock_guard lock(mMutex);
        ++mEnded;
        mEnd.notify_one();
    }

    void watch() {
        std::unique_lock lock(mMutex);
        int64_t last = -1;
        while (!mEnd.wait_for(lock, kLimit, [this] { return mEnded == kThreads; })) {
            if (std::exchange(last, mDone) == mDone) {
                for (const auto& at : mAt) {
                    std::cerr << "stands still in: " << at << "\n";
                }
                abort();
            }
        }
    }

    World& mWorld;
    const int mEach;
    std::vector<std::unique_ptr<Client>> mClients;
    std::array<std::atomic<const char*>, kThreads> mAt = {};
    std::atomic<int64_t> mDone = 0;
    std::mutex mMutex;  // guards the count of threads that have ended
    std::condition_variable mEnd;
    size_t mEnded = 0;
};

}  // namespace

TEST(EngineStressTest, servesWhileEverythingHappensAtOnce) {
    __android_log_set_logger(count);
    // The daemon's threads never end, so nothing that they may use does.
    static World& world = *new World;
    ASSERT_EQ(kelvo::kelvo_start(nullptr), 0);
    const int operations = numberFrom("KELVO_STRESS_OPERATIONS", kDefaultOperations);
    const auto start = steady_clock::now();
    static Stress& stress = *new Stress(world, operations,
                                        static_cast<uint32_t>(numberFrom("KELVO_STRESS_SEED", 1)));
    stress.perform();
    std::cout << operations << " operations in "
              << std::chrono::duration<double>(steady_clock::now() - start).count() << " s\n";
    for (const Seen& seen : sSeen) {
        std::cout << seen.count << " × " << seen.words << "\n";
        EXPECT_TRUE(seen.count > 0 || operations < kDefaultOperations) << seen.words;
    }
    EXPECT_LE(sSeen[std::size(sSeen) - 1].count, 1) << "one sampling thread for all of it";

    EXPECT_THAT(threadNames(getpid()),
                testing::IsSupersetOf({"work", "st-fitting", "comp-monitor"}));

    // A full queue refuses what follows.
    MessageManager::getInstance().sendMessage(kelvo::messages::notifyThermalStatus(kLastStatus));
    ASSERT_TRUE(await([] { return sHandledAll.load(); }, kLimit));

    // Nothing is left of the listeners, and a new one is told.
    stress.leaveListeners();
    static std::atomic<int> told = 0;
    static sim::FrameworkClient& last = *new sim::FrameworkClient(
            [](const sim::Event& event) { told += event.name == "notify_thermal_status" ? 1 : 0; });
    last.perform(sim::Listen{"last", 10050});
    EXPECT_TRUE(await([&] { return told >= 1; }, kLimit)) << "at its registration";
    last.perform(sim::Transact{15, {3}, std::nullopt, 1000});
    EXPECT_TRUE(await([&] { return told >= 2 && sListeners == 1; }, kLimit)) << sListeners;

    // The fitting loop goes on.
    for (int32_t zone = 0; zone < static_cast<int32_t>(world.scenario.zones.size()); ++zone) {
        world.phone.apply(sim::ZoneChange{zone, 52000});
    }
    world.node.takeLines([](std::string_view) {});
    pollfd fd{world.node.fd(), POLLIN, 0};
    EXPECT_EQ(poll(&fd, 1, 1000 * static_cast<int>(kLimit.count())), 1) << "nothing was written";
}
