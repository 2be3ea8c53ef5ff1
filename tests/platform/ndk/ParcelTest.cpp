#include <aidl/android/hardware/health/HealthInfo.h>
#include <android/binder_parcel_utils.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "Echo.h"

namespace {

using aidl::android::hardware::health::DiskStats;
using aidl::android::hardware::health::HealthInfo;

Echo::Record fullRecord(const ndk::SpAIBinder& binder) {
    return {INT32_MIN,
            INT64_MAX,
            -0.5f,
            1e300,
            true,
            -128,
            u'\xffff',
            std::string("z\xc3\xbc\xf0\x9f\x98\x80\0!", 9),
            "",
            {1, -1},
            {INT64_MIN},
            {0.25f},
            {-1e-300, 0},
            {true, false, true},
            {-1, 0, 1},
            {u'a', u'\xd800'},
            {{3}},
            std::vector<bool>(),
            {{std::nullopt, "x"}},
            binder};
}

auto fieldsOf(const Echo::Record& r) {
    return std::tie(r.i, r.l, r.f, r.d, r.z, r.y, r.c, r.text, r.maybe, r.ints, r.longs, r.floats,
                    r.doubles, r.flags, r.bytes, r.chars, r.maybeInts, r.maybeFlags, r.maybeTexts,
                    r.binder);
}

// A proxy of a local binder: everything goes through parcels.
struct NdkParcelTest : testing::Test {
    const std::shared_ptr<Echo> mEcho = ndk::SharedRefBase::make<Echo>();
    const std::shared_ptr<aidl::ndktest::BpEcho> mProxy =
            ndk::SharedRefBase::make<aidl::ndktest::BpEcho>(mEcho->asBinder());
};

TEST_F(NdkParcelTest, carriesEachTypeBothWays) {
    const Echo::Record full = fullRecord(mEcho->asBinder());
    Echo::Records out(3);
    Echo::Records inOut = {full, Echo::Record()};
    Echo::Records result;
    ASSERT_TRUE(mProxy->records({full}, &out, &inOut, &result).isOk());
    EXPECT_EQ(3U, mEcho->outLength);
    ASSERT_EQ(2U, out.size());
    ASSERT_EQ(1U, inOut.size());
    ASSERT_EQ(1U, result.size());
    EXPECT_EQ(fieldsOf(Echo::Record()), fieldsOf(out[1]));
    for (const Echo::Record& record : {out[0], inOut[0], result[0]}) {
        EXPECT_EQ(fieldsOf(full), fieldsOf(record));
    }
}

TEST_F(NdkParcelTest, carriesFilesAsDuplicates) {
    const ndk::ScopedFileDescriptor sent(open("/dev/null", O_RDONLY | O_CLOEXEC));
    ndk::ScopedFileDescriptor result;
    ASSERT_TRUE(mProxy->file(sent, &result).isOk());
    struct stat before = {};
    struct stat after = {};
    ASSERT_EQ(0, fstat(sent.get(), &before) | fstat(result.get(), &after));
    EXPECT_NE(sent.get(), result.get());
    EXPECT_EQ(before.st_rdev, after.st_rdev);
    ASSERT_TRUE(mProxy->file(ndk::ScopedFileDescriptor(), &result).isOk());
    EXPECT_EQ(-1, result.get());
}

TEST_F(NdkParcelTest, carriesStatusesAndOneWayCalls) {
    for (int how = 0; how <= 3; ++how) {
        EXPECT_EQ(Echo::failure(how).getDescription(), mProxy->fail(how).getDescription());
    }
    EXPECT_EQ(-7, mProxy->fail(2).getServiceSpecificError());
    EXPECT_EQ(STATUS_PERMISSION_DENIED, mProxy->fail(3).getStatus());
    EXPECT_EQ(EX_TRANSACTION_FAILED, Echo::Status::fromExceptionCode(-77).getExceptionCode());
    EXPECT_EQ(STATUS_UNKNOWN_ERROR, Echo::Status::fromStatus(-77).getStatus());
    EXPECT_TRUE(mProxy->note(5).isOk());
    EXPECT_EQ(5, mEcho->noted.get_future().get());
}

/** Status of reading a T from a parcel of these words. */
template <typename T, typename Read>
binder_status_t readFrom(const std::vector<int32_t>& words, Read read) {
    const ndk::ScopedAParcel parcel(AParcel_create());
    for (const int32_t word : words) {
        AParcel_writeInt32(parcel.get(), word);
    }
    AParcel_setDataPosition(parcel.get(), 0);
    T value;
    return read(parcel.get(), &value);
}

constexpr auto kReadVector = [](auto* from, auto* to) { return ndk::AParcel_readVector(from, to); };
constexpr auto kResize = [](auto* from, auto* to) { return ndk::AParcel_resizeVector(from, to); };
constexpr auto kReadString = [](auto* from, auto* to) { return ndk::AParcel_readString(from, to); };
constexpr auto kReadInfo = [](auto* from, auto* to) { return to->readFromParcel(from); };

template <typename... T>
void expectVectorsRefuse(const std::vector<int32_t>& words, binder_status_t status) {
    for (const binder_status_t actual : {readFrom<std::vector<T>>(words, kReadVector)...}) {
        EXPECT_EQ(status, actual) << testing::PrintToString(words);
    }
}

TEST_F(NdkParcelTest, refusesHostileCounts) {
    const std::pair<std::vector<int32_t>, binder_status_t> rows[] = {
            {{}, STATUS_NOT_ENOUGH_DATA},          {{-2, 0}, STATUS_BAD_VALUE},
            {{INT32_MIN, 0}, STATUS_BAD_VALUE},    {{-1}, STATUS_UNEXPECTED_NULL},
            {{INT32_MAX}, STATUS_NOT_ENOUGH_DATA}, {{5, 0}, STATUS_NOT_ENOUGH_DATA},
    };
    for (const auto& [words, status] : rows) {
        expectVectorsRefuse<int32_t, uint32_t, int64_t, uint64_t, float, double, char16_t, int8_t,
                            uint8_t, bool, std::string, std::optional<std::string>, HealthInfo,
                            ndk::SpAIBinder, ndk::ScopedFileDescriptor>(words, status);
        EXPECT_EQ(status, readFrom<std::string>(words, kReadString));
    }
    EXPECT_EQ(STATUS_NO_MEMORY, readFrom<std::vector<int8_t>>({1'000'001}, kResize));
    EXPECT_EQ(STATUS_BAD_VALUE, readFrom<std::vector<int8_t>>({-2}, kResize));
    EXPECT_EQ(STATUS_UNEXPECTED_NULL, readFrom<HealthInfo>({0, 8}, kReadInfo));
    EXPECT_EQ(STATUS_BAD_VALUE, readFrom<HealthInfo>({1, -8}, kReadInfo));
    EXPECT_EQ(STATUS_NOT_ENOUGH_DATA, readFrom<HealthInfo>({1, INT32_MAX, 1}, kReadInfo));
    // A size whose sum with the position is no int: refused as a position, and nothing else.
    std::vector<int32_t> counters(2 + 2 * 11);
    counters[0] = 1;
    counters[1] = INT32_MAX;
    EXPECT_EQ(STATUS_OK, readFrom<DiskStats>(counters, kReadInfo));
}

}  // namespace
