// The daemon and its phone while anything around is killed, stopped, full, broken or moved.
// KELVO_FAULTS: "all" tries every point, another text the points whose names have it, none a few of
// each kind. KELVO_FAULTS_SEED changes their order and where exactly a fault strikes.

#include <gtest/gtest.h>
#include <json/json.h>
#include <signal.h>

#include <algorithm>
#include <fstream>
#include <random>

#include "FaultPhone.h"

namespace {

using Random = std::minstd_rand;

constexpr int kCalls = 50;  // around a strike
constexpr int kFew = 2;     // of a kind

/** Something that is tried; says what was broken, or "", and how long all took to hold again. */
struct Point {
    std::string kind, moment;
    std::string health;     // the phone's HAL
    bool restarts = false;  // the daemon
    std::function<std::string(FaultPhone& phone, Random& random, double& recovery)> pass;

    std::string name() const { return kind + " " + moment; }
};

unsigned promisesOf(const Json::Value& name) {
    static const std::map<std::string, unsigned> kNames = {
            {"lives", kLives},
            {"answers", kLives | kAnswers},
            {"answers and tells", kLives | kAnswers | kTells},
            {"keeps on", kKeepsOn},
            {"all", kAll},
            {"publishes", kLives | kPublishes},
            {"is silent", kIsSilent},
            {"ends", kEnds}};
    return kNames.at(name.asString());
}

/** Brings the phone to the moment; false when it does not come. */
bool reach(const Json::Value& moment, FaultPhone& phone, Random& random) {
    const Json::Value& logs = moment["logs"];
    const auto which = static_cast<Json::ArrayIndex>(random() % std::max(1u, logs.size()));
    const std::string log = logs.get(which, "").asString();
    if (!moment.isMember("call")) {
        phone.startKelvod();
        return phone.log.holds(log);
    }
    const int code = moment["call"].asInt();
    const std::string call = code == 0 ? "/dev/null" : std::to_string(code);
    if (log.empty()) {
        return phone.call(call, 1, kCalls, static_cast<int>(1 + random() % kCalls));
    }
    const size_t before = phone.log.count(log);
    phone.moveShell();
    return phone.call(call, 1, 1, 1) && phone.log.holds(log, before + 1);
}

/** What is broken while a fault lasts, or once it has ended. */
std::string lookAt(FaultPhone& phone, unsigned promises, double& recovery,
                   const std::function<void()>& end) {
    const std::string meanwhile = phone.broken(promises);
    const auto start = std::chrono::steady_clock::now();
    end();
    const std::string broken = meanwhile.empty() ? phone.broken(kAll) : meanwhile + " meanwhile";
    recovery = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    return broken;
}

Point strikePoint(const Json::Value& victim, int signal, const Json::Value& moment) {
    const bool kills = signal == SIGKILL;
    const bool starts = !moment.isMember("call");
    const bool essential = victim["essential"].asBool();
    const std::string name = victim["name"].asString();
    const std::string beside = victim["beside"].asString();
    return {(kills ? "kill " : "stop ") + name + (beside.empty() ? "" : ", stop " + beside),
            moment["name"].asString(), name == "health-hidl" ? name : "health",
            starts || (kills && essential),
            [=](FaultPhone& phone, Random& random, double& recovery) -> std::string {
                if (!reach(moment, phone, random)) {
                    return "the moment does not come";
                }
                if (!beside.empty()) {
                    phone.strike(beside, SIGSTOP);
                }
                phone.strike(name, signal);
                unsigned promises = promisesOf(victim[kills ? "dead" : "stopped"]);
                if (starts && essential) {
                    promises &= kEnds;  // nobody can find the daemon yet
                } else if (starts) {
                    phone.startClients();
                }
                return lookAt(phone, promises, recovery, [&] {
                    if (!beside.empty()) {
                        phone.repair(beside, SIGSTOP);
                    }
                    phone.repair(name, signal);
                });
            }};
}

/** What a fault does at its begin or end; false when its line does not come to the log. */
bool turn(const Json::Value& fault, const char* member, FaultPhone& phone, size_t lines) {
    phone.run(fault.get(member, ":").asString());
    if (fault.isMember("call")) {
        phone.call(fault["call"].asString(), 1, 1);
    }
    return !fault.isMember("log") || phone.log.holds(fault["log"].asString(), lines);
}

Point faultPoint(const Json::Value& fault, const Json::Value& moment) {
    const unsigned promises = promisesOf(fault["promises"]);
    const bool starts = fault.isMember("before");
    const bool restarts = starts || promises == kEnds;
    return {fault["name"].asString(), moment["name"].asString(), "health", restarts,
            [=](FaultPhone& phone, Random& random, double& recovery) -> std::string {
                const size_t lines = phone.log.count(fault.get("log", "\n").asString());
                if (!reach(moment, phone, random)) {
                    return "the moment does not come";
                }
                if (starts) {
                    phone.startKelvod(fault["before"].asString());
                    if (promises != kEnds) {
                        phone.startClients();
                    }
                } else if (!turn(fault, "begin", phone, lines + 1)) {
                    return "the fault does not come";
                }
                return lookAt(phone, promises, recovery, [&] {
                    if (restarts) {
                        return phone.repair("kelvod", SIGKILL);
                    }
                    turn(fault, "end", phone, lines + (fault.isMember("call") ? 2 : 1));
                });
            }};
}

std::vector<Point> allPoints() {
    Json::Value table;
    std::ifstream(FAULT_POINTS) >> table;
    std::vector<Point> points;
    for (const Json::Value& victim : table["victims"]) {
        for (const Json::Value& moment : table["moments"]) {
            const bool starts = !moment.isMember("call");
            if (starts && (victim["name"] == "listener" || victim.isMember("beside"))) {
                continue;  // there is none yet, or the daemon finds nobody
            }
            for (const int signal : {SIGKILL, SIGSTOP}) {
                points.push_back(strikePoint(victim, signal, moment));
            }
        }
    }
    for (const Json::Value& fault : table["faults"]) {
        if (!fault["plain"].asBool() || *WALL_CLOCK != '\0') {
            points.push_back(faultPoint(fault, table["moments"][0]));
        }
    }
    return points;
}

/** In the order of the run: what starts the daemon anew is last, for leaks show with time. */
std::vector<Point> chosenPoints(const std::string& choice, uint32_t seed) {
    std::vector<Point> points = allPoints();
    std::ranges::shuffle(points, Random(seed));
    std::map<std::string, int> ofKind;  // "kill", "zone"
    std::erase_if(points, [&](const Point& point) {
        return choice.empty() ? ++ofKind[point.name().substr(0, point.name().find(' '))] > kFew
                              : choice != "all" && point.name().find(choice) == std::string::npos;
    });
    std::ranges::stable_sort(
            points, {}, [](const Point& point) { return std::pair(point.health, point.restarts); });
    return points;
}

std::string setting(const char* name, const char* otherwise) {
    const char* const value = getenv(name);
    return value != nullptr ? value : otherwise;
}

}  // namespace

TEST(FaultsTest, leaveWhatIsPromised) {
    const auto seed = static_cast<uint32_t>(std::stoul(setting("KELVO_FAULTS_SEED", "1")));
    Random random(seed);
    std::optional<FaultPhone> phone;
    double slowest = 0;
    int failed = 0;
    const std::vector<Point> points = chosenPoints(setting("KELVO_FAULTS", ""), seed);
    for (const Point& point : points) {
        std::printf("%-60s ", point.name().c_str());
        std::fflush(stdout);
        double recovery = 0;
        std::string broken;
        try {
            if (!phone || phone->health != point.health) {
                phone.reset();
                phone.emplace(point.health);
            }
            broken = point.pass(*phone, random, recovery);
        } catch (const std::exception& error) {
            broken = error.what();
        }
        std::printf("recovery %5.2f s\n", recovery);
        EXPECT_EQ(broken, "") << point.name();
        if (!broken.empty()) {
            ++failed;
            phone.reset();
        }
        slowest = std::max(slowest, recovery);
    }
    std::printf("points %zu, failed %d, slowest recovery %.2f s, seed %u\n", points.size(), failed,
                slowest, seed);
    EXPECT_FALSE(points.empty());
}
