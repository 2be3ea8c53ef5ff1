#include "KelvodView.h"

#include <binder/IServiceManager.h>
#include <binder/Parcel.h>
#include <binder/ProcessState.h>

#include "client/CallValues.h"
#include "client/StatusListener.h"
#include "service/ServiceCodes.h"

using android::IBinder;
using android::OK;
using android::Parcel;
using android::sp;
using android::String16;

namespace {

using enum client::ReplyType;

constexpr double kReportedAbove = 35.999;  // °C; at and below it no heat source is watched
constexpr int kThresholdsLast = 10;        // looks
constexpr int32_t kNoAmbient = std::numeric_limits<int32_t>::min();

/** The values of a reply; none when the call failed or the reply lacks one. */
std::optional<std::vector<Json::Value>> callKelvod(const sp<IBinder>& kelvod, uint32_t code,
                                                   const std::vector<client::ReplyType>& types) {
    Parcel request;
    Parcel reply;
    request.writeInterfaceToken(String16(client::kServiceDescriptor));
    if (kelvod->transact(code, request, &reply) != OK) {
        return std::nullopt;
    }
    std::vector<Json::Value> values;
    for (const client::ReplyType type : types) {
        values.push_back(client::readReplyValue(reply, type));
        if (values.back().isNull()) {
            return std::nullopt;
        }
    }
    return values;
}

std::vector<int32_t> toNumbers(const Json::Value& list) {
    std::vector<int32_t> numbers;
    for (const Json::Value& value : list) {
        numbers.push_back(value.asInt());
    }
    return numbers;
}

/** Before the first output each of the four temperatures is -1. */
bool hasOutput(const Json::Value& temps) {
    for (const Json::Value& temp : temps) {
        if (temp.asInt() != -1) {
            return true;
        }
    }
    return false;
}

}  // namespace

/** Remembers what has been told of the heat source. Called on binder threads. */
class KelvodView::Listener {
  public:
    void hear(const client::ListenerCall::Members& members) {
        for (const auto& [name, value] : members) {
            if (name == "detail") {
                const std::lock_guard lock(mMutex);
                mHeatSource = mainHeatSource(value);
            }
        }
    }
    std::optional<std::string> heatSource() {
        const std::lock_guard lock(mMutex);
        return mHeatSource;
    }

  private:
    std::mutex mMutex;  // guards the heat source; a leaf
    std::optional<std::string> mHeatSource;
};

KelvodView::KelvodView() {
    android::ProcessState::self()->startThreadPool();
    mThread = std::thread([this] { run(); });
}

KelvodView::~KelvodView() {
    {
        const std::lock_guard lock(mMutex);
        mStops = true;
    }
    mChanged.notify_all();
    mThread.join();
}

std::optional<KelvodReport> KelvodView::look(std::chrono::milliseconds limit) {
    std::unique_lock lock(mMutex);
    const int asked = ++mAsked;
    mChanged.notify_all();
    const bool answered = mChanged.wait_for(lock, limit, [&] { return mAnswered >= asked; });
    return answered ? mReport : std::nullopt;
}

void KelvodView::run() {
    std::unique_lock lock(mMutex);
    while (true) {
        mChanged.wait(lock, [this] { return mStops || mAsked > mAnswered; });
        if (mStops) {
            return;
        }
        const int asked = mAsked;
        lock.unlock();
        std::optional<KelvodReport> report = ask();
        lock.lock();
        mReport = std::move(report);
        mAnswered = asked;
        mChanged.notify_all();
    }
}

/** True when there is a daemon; one that was not there before gets a listener. */
bool KelvodView::connect() {
    if (mKelvod != nullptr && mKelvod->pingBinder() == OK) {
        return true;
    }
    mKelvod = android::defaultServiceManager()->checkService(String16("kelvo"));
    if (mKelvod == nullptr) {
        return false;
    }
    mLevel.reset();
    mThresholds = {};
    mListener = std::make_shared<Listener>();
    const sp<IBinder> binder = new client::StatusListener(
            [listener = mListener](const std::string&, const auto& members) {
                listener->hear(members);
            });
    Parcel request;
    Parcel reply;
    request.writeInterfaceToken(String16(client::kServiceDescriptor));
    request.writeStrongBinder(binder);
    return mKelvod->transact(kelvo::REGISTER_CLIENT, request, &reply) == OK;
}

std::optional<KelvodReport> KelvodView::ask() {
    if (!connect()) {
        mKelvod = nullptr;
        return std::nullopt;
    }
    const auto status = callKelvod(mKelvod, kelvo::GET_THERMAL_STATUS, {Exception, Int32});
    const auto shell = callKelvod(mKelvod, kelvo::GET_CURRENT_TEMP, {Float});
    const auto temps = callKelvod(mKelvod, kelvo::GET_ALL_SHELL_TEMPS, {Int32, Vector});
    const auto ambient = callKelvod(mKelvod, kelvo::GET_AMBIENT_TEMP, {Int32});
    if (!status || !shell || !temps || !ambient) {
        return std::nullopt;
    }
    KelvodReport report;
    if (hasOutput((*temps)[1])) {
        report.shell = (*shell)[0].asDouble();
        if ((*status)[1] != -1) {
            report.status = (*status)[1].asInt();
            report.level = levelAt(*report.shell, *report.status);
        }
    }
    if ((*ambient)[0] != kNoAmbient) {
        report.ambient = (*ambient)[0].asInt();
    }
    if (report.shell > kReportedAbove) {
        report.heatSource = mListener->heatSource();
    }
    return report;
}

/** They can change at any time; the daemon's log says each time that it was asked. */
void KelvodView::learnThresholds() {
    const auto lists = callKelvod(mKelvod, kelvo::GET_THERMAL_CONFIG,
                                  {Exception, Int32, Vector, Int32, Vector, Int32, Vector});
    if (lists) {
        mThresholds = {toNumbers((*lists)[2]), toNumbers((*lists)[4]), toNumbers((*lists)[6])};
        mThresholdsAge = 0;
    }
}

std::optional<int32_t> KelvodView::levelAt(double celsius, int32_t status) {
    if (++mThresholdsAge > kThresholdsLast || mThresholds.status.empty()) {
        learnThresholds();
    }
    mLevel = client::levelOf(mThresholds, status, celsius, mLevel);
    return mLevel;
}
