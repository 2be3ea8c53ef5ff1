// What the daemon makes of requests that no sane client sends.

#include <binder/IServiceManager.h>
#include <binder/ProcessState.h>
#include <functional>

#include "KelvodTest.h"
#include "client/StatusListener.h"

namespace {

using namespace kelvo;
using android::IBinder;
using android::OK;
using android::Parcel;
using android::sp;
using android::String16;

using KelvodInputTest = KelvodTest;
using Fill = std::function<void(Parcel& request)>;

Fill ints(std::vector<int32_t> numbers) {
    return [numbers](Parcel& request) {
        for (const int32_t number : numbers) {
            request.writeInt32(number);
        }
    };
}

Fill text(const std::u16string& units) {
    return [units](Parcel& request) { request.writeString16(units.data(), units.size()); };
}

const Fill kNothing = [](Parcel&) {};
const Fill kItself = [](Parcel& request) { request.writeStrongBinder(kelvodService()); };
/** Its length says more than there is. */
const Fill kCutText = [](Parcel& request) {
    request.writeInt32(1000);
    request.writeInt32(0x00410041);
};

/** A role: offers its listener as the service "listener" and waits for its end. */
int offerListener(RoleLink& link) {
    android::ProcessState::self()->startThreadPool();
    android::defaultServiceManager()->addService(
            String16("listener"), new client::StatusListener([](const auto&, const auto&) {}));
    link.send("offered");
    link.receive();
    return 0;
}
const Role kOfferListener("offerListener", offerListener);

}  // namespace

TEST_F(KelvodInputTest, getsItsAnswerOrItsError) {
    startKelvod();
    const std::u16string longText(50 * 1024, u'x');  // 100 KiB
    const std::u16string unclean = {u'a', 0xD800, u'b', 0xDC00, 0xDFFF, 0, 0xFFFE, u'c'};
    const int32_t most = std::numeric_limits<int32_t>::max();
    using Codes = std::vector<uint32_t>;
    const Codes takeANumber{SET_SCREEN_STATUS, SET_LIGHT_LAMP_STATUS, SET_SCREEN_FOLD_STATUS,
                            NOTIFY_THERMAL_STATUS, COMPONENT_HEAT_TEST};
    const Codes takeAText{SET_CURRENT_PACKAGE, SET_WIFI_INFO, SET_NETWORK_INFO,
                          SET_NETWORK_SPEED_INFO};
    // what, codes, fill, answer
    const std::tuple<const char*, Codes, Fill, std::vector<int32_t>> rows[] = {
            {"no listener", {REGISTER_CLIENT}, kNothing, {-1}},
            {"numbers for a listener", {REGISTER_CLIENT}, ints({1, 2, 3, 4, 5, 6, 7}), {-1}},
            {"no listener", {UNREGISTER_CLIENT}, kNothing, {1}},
            {"itself, then again", {REGISTER_CLIENT, REGISTER_CLIENT}, kItself, {1}},
            {"no lists", {SET_DYNAMIC_CONFIG}, kNothing, {0}},
            {"no list after the marker", {SET_DYNAMIC_CONFIG}, ints({21}), {0}},
            {"other markers", {SET_DYNAMIC_CONFIG}, ints({20, 22, -21}), {0}},
            {"negative lengths", {SET_DYNAMIC_CONFIG}, ints({21, -5, 21, -1, 21, -most - 1}), {0}},
            {"an endless list", {SET_DYNAMIC_CONFIG}, ints({21, most, 1, 2, 3}), {0}},
            {"a list of 2^30", {SET_DYNAMIC_CONFIG}, ints({21, 1 << 30, 1}), {0}},
            {"no number", takeANumber, kNothing, {}},
            {"no such command", {COMPONENT_HEAT_TEST}, ints({most}), {}},
            {"no text", {SET_CURRENT_PACKAGE}, kNothing, {}},
            {"a negative length", {SET_CURRENT_PACKAGE}, ints({-2}), {}},
            {"an endless text", {SET_CURRENT_PACKAGE}, ints({most, 0}), {}},
            {"a cut text", {SET_WIFI_INFO}, kCutText, {}},
            {"100 KiB", takeAText, text(longText), {}},
            {"unclean", {SET_CURRENT_PACKAGE, SET_NETWORK_INFO}, text(unclean), {}},
    };
    const sp<IBinder> kelvod = kelvodService();
    for (const auto& [what, codes, fill, answer] : rows) {
        for (const uint32_t code : codes) {
            SCOPED_TRACE(std::to_string(code) + ": " + what);
            KelvodRequest request;
            fill(request);
            Parcel reply;
            EXPECT_EQ(kelvod->transact(code, request, &reply), OK);
            EXPECT_EQ(reply.dataSize(), answer.size() * sizeof(int32_t));
            for (const int32_t word : answer) {
                EXPECT_EQ(reply.readInt32(), word);
            }
            EXPECT_EQ(callKelvod(GET_THERMAL_STATUS), OK);
        }
    }
    Parcel empty;
    Parcel reply;
    EXPECT_EQ(kelvod->transact(GET_THERMAL_STATUS, empty, &reply), android::PERMISSION_DENIED);
    EXPECT_EQ(callKelvod(0x00ffffff), android::UNKNOWN_TRANSACTION);
    EXPECT_TRUE(logs("already added")) << "itself, the second time";
    EXPECT_TRUE(isAlive());
}

TEST_F(KelvodInputTest, mayBeListenersOfTheDead) {
    startKelvod();
    RoleProcess& owner = mWorld.start("offerListener");
    ASSERT_EQ(owner.receive(), "offered");
    const sp<IBinder> listener =
            android::defaultServiceManager()->checkService(String16("listener"));
    ASSERT_NE(listener, nullptr);
    owner.kill();
    KelvodRequest request;
    Parcel reply;
    request.writeStrongBinder(listener);
    EXPECT_EQ(kelvodService()->transact(REGISTER_CLIENT, request, &reply), OK);
    EXPECT_EQ(reply.readInt32(), 1) << "that it is dead is seen later";
    EXPECT_TRUE(logs(" died!"));
    startListeners();  // what was posted before it has been handled
    EXPECT_EQ(callKelvod(NOTIFY_THERMAL_STATUS, {3}), OK);
    EXPECT_TRUE(logs("Entering notifyCallback, binder clients size 1\n"));
}
