#include "FaultPhone.h"

#include <stdlib.h>
#include <sys/wait.h>

#include "support/Await.h"
#include "support/Files.h"
#include "support/Json.h"
#include "system/KelvodTest.h"

namespace {

namespace fs = std::filesystem;
using std::string_literals::operator""s;

constexpr int kPromisedMs = 10000;  // on a machine that is busy; the page says what is usual
constexpr int kPatienceMs = 1500;
constexpr int64_t kMostThreads = 40;
constexpr int64_t kMostDescriptors = 60;

bool within(const std::function<bool()>& holds) {
    return await(holds, std::chrono::milliseconds(kPromisedMs));
}

std::unique_ptr<RoleProcess> startRole(const std::string& role) {
    auto process = std::make_unique<RoleProcess>(role, "1", std::nullopt);
    if (process->receive() != "ready") {
        throw std::runtime_error("a process \"" + role + "\" does not find the daemon");
    }
    return process;
}

// Levels change at 40 °C, and every service is asked.
std::string configMembers() {
    return "," + scene("flashon", 0, "skin") + "," + ambientScene("skin") + kHeatSources;
}

}  // namespace

FaultPhone::FaultPhone(const std::string& kind)
      : health(kind), root(getenv("KELVO_ROOT")), log(root + "/data/kelvod.log") {
    build();
    boot();
}

void FaultPhone::build() const {
    setenv("KELVO_BINDER", "hub", 1);  // the driver that can be harmed
    signal(SIGINT, SIG_DFL);           // a shell in the background would have the daemon ignore it
    const std::string zone = "/sys/class/thermal/thermal_zone0";
    setenv("ROOT", root.c_str(), 1);
    setenv("ZONE", (root + zone).c_str(), 1);
    setenv("OUT", (root + "/proc/shell-temp").c_str(), 1);
    setenv("CONF", (root + "/system_ext/etc/kelvo/kelvo.conf").c_str(), 1);
    sim::DeviceTree tree(root);
    buildSmallPhone(tree);
    tree.setZoneTemp(0, mShell);
    tree.setNode("/data/clock", "0");
    tree.setNode("/vendor/etc/vintf/declared", std::string(sim::serviceKind(health).declared) +
                                                       "\n" +
                                                       sim::serviceKind("performance").declared);
    tree.setProperty("persist.sys.shelltemp.interval", "1");
    tree.setNode("/system_ext/etc/kelvo/kelvo.conf", kelvodConfig(30, 30, configMembers()));
    run("cp $CONF $CONF.whole");
}

void FaultPhone::boot() {
    mKelvod.reset();
    mHals.clear();
    mBinder.reset();
    mBinder.emplace(fs::path(programPath("kelvod")).parent_path(), root, root + "/data");
    for (const std::string& kind :
         {health, "charger"s, "panel"s, "performance"s, "frames"s, "quorix"s}) {
        mHals[kind] = std::make_unique<Hal>(kind, root);
    }
    startKelvod();
    startClients();
}

void FaultPhone::startKelvod(const std::string& before) {
    mClient.reset();
    mKelvod.reset();
    const std::string command =
            "ulimit -c 0; " + before + " exec env " WALL_CLOCK " " + programPath("kelvod");
    mKelvod.emplace(std::vector<std::string>{"/bin/sh", "-c", command}, root, log.path());
    setenv("PID", std::to_string(mKelvod->pid()).c_str(), 1);
}

void FaultPhone::startClients() {
    mClient = startRole(kFaultClientRole);
    mOther = startRole(kListenRole);
    mListener = startRole(kListenRole);
    mCalling = 0;
}

pid_t FaultPhone::pid(const std::string& victim) const {
    const auto hal = mHals.find(victim);
    return hal != mHals.end()           ? hal->second->pid()
           : victim == "kelvod"         ? mKelvod->pid()
           : victim == "hub"            ? mBinder->hub()
           : victim == "servicemanager" ? mBinder->serviceManager()
                                        : mListener->pid();
}

void FaultPhone::strike(const std::string& victim, int signal) {
    mIsDeaf = mIsDeaf || victim == "listener";
    if (victim == "listener" && signal == SIGKILL) {
        return mListener->kill();
    }
    ::kill(pid(victim), signal);
    siginfo_t info;
    waitid(P_PID, static_cast<id_t>(pid(victim)), &info, WEXITED | WSTOPPED | WNOWAIT);
}

void FaultPhone::repair(const std::string& victim, int signal) {
    mIsDeaf = false;
    if (signal == SIGSTOP) {
        ::kill(pid(victim), SIGCONT);
    } else if (mHals.count(victim) > 0) {
        mHals.at(victim)->killAndStart();
    } else if (victim == "listener") {
        mListener = startRole(kListenRole);
    } else if (victim == "kelvod") {
        startKelvod();
    } else {
        boot();
    }
    if (mClient == nullptr) {
        startClients();
    }
}

void FaultPhone::run(const std::string& command) const {
    if (std::system(command.c_str()) != 0) {
        throw std::runtime_error("this fails: " + command);
    }
}

bool FaultPhone::call(const std::string& what, int first, int last, int told) {
    mClient->send(what + " " + std::to_string(first) + " " + std::to_string(last) + " " +
                  std::to_string(told));
    ++mCalling;
    return told < 0 || mClient->receive() == "now";
}

std::string FaultPhone::finish() {
    std::string status;
    for (; mCalling > 0; --mCalling) {
        status = mClient->receive(kPromisedMs);
    }
    return status;
}

void FaultPhone::moveShell() {
    mShell = mShell == 40200 ? 39800 : 40200;
    run("echo " + std::to_string(mShell) + " >$ZONE/new && mv $ZONE/new $ZONE/temp");
}

bool FaultPhone::isPublished() const {
    return within([this] {
        return readFile(root + "/proc/shell-temp")
                .starts_with("0 " + std::to_string(mShell) + "\n");
    });
}

bool FaultPhone::isTold(RoleProcess& listener) const {
    listener.send("until status " + std::to_string(mShell / 1000 - 30));
    return listener.receive(kPromisedMs) == "seen";
}

/** The charger is told of the screen, health gets a callback. */
bool FaultPhone::isUsed() {
    Hal& charger = *mHals.at("charger");
    ++mScreen;
    return within([&] {
               call(std::to_string(kelvo::SET_SCREEN_STATUS), mScreen, mScreen);
               finish();
               charger.look();
               return charger.lastStatus() == mScreen;
           }) &&
           mHals.at(health)->awaitClient();
}

std::string FaultPhone::unsound() const {
    const std::string process = "/proc/" + std::to_string(mKelvod->pid());
    const int64_t threads = countEntries(process + "/task");
    const int64_t descriptors = countEntries(process + "/fd");
    if (threads > kMostThreads || descriptors > kMostDescriptors) {
        return std::to_string(threads) + " threads, " + std::to_string(descriptors) + " files";
    }
    for (const auto& file : fs::directory_iterator(root + "/data")) {
        for (const char* const text : {"ABORT", "abort", "Sanitizer", "runtime error:"}) {
            if (file.is_regular_file() && LogFile(file.path()).count(text) > 0) {
                return file.path().filename().string() + " says " + text;
            }
        }
    }
    return "";
}

std::string FaultPhone::broken(unsigned promises) {
    if ((promises & kEnds) != 0) {
        return within([this] { return mKelvod->ending().has_value(); }) ? "" : "kelvod lives on";
    }
    if ((promises & kIsSilent) != 0) {
        call(std::to_string(kelvo::GET_ALL_SHELL_TEMPS), 1, 1);
        while (mCalling > 0 && !mClient->receive(kPatienceMs).empty()) {
            --mCalling;  // a call that was before
        }
        return mCalling > 0 ? "" : "it is not stopped";
    }
    if ((promises & kLives) != 0 && mKelvod->ending()) {
        return "kelvod has ended with " + *mKelvod->ending();
    }
    if ((promises & kAnswers) != 0 &&
        (call(std::to_string(kelvo::GET_ALL_SHELL_TEMPS), 1, 1), finish()) != "0") {
        return "no answer";
    }
    std::vector<RoleProcess*> told;
    if ((promises & kTells) != 0) {
        told.assign({mOther.get(), mListener.get()});
        told.resize(mIsDeaf ? 1 : 2);
    }
    for (RoleProcess* const listener : told) {
        listener->ask("forget");
    }
    if ((promises & (kTells | kPublishes)) != 0) {
        moveShell();
    }
    if (!std::ranges::all_of(told, [this](auto* listener) { return isTold(*listener); })) {
        return "a listener is not told";
    }
    if ((promises & kPublishes) != 0 && !isPublished()) {
        return "no temperature in the node";
    }
    if ((promises & kUses) != 0 && !isUsed()) {
        return "a service is not used";
    }
    return (promises & kLives) != 0 ? unsound() : "";
}
