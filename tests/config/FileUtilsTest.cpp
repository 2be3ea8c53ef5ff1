#include "config/FileUtils.h"

#include <limits>
#include <memory>

#include <binder/Binder.h>
#include <binder/LocalServiceManager.h>
#include <binder/Parcel.h>
#include <gtest/gtest.h>

#include "StoredConfig.h"
#include "support/LogCapture.h"

namespace {

constexpr char kNode[] = "/sys/node";

/** A display compositor that has drawn 77 frames. */
class Compositor : public android::BBinder {
  protected:
    android::status_t onTransact(uint32_t code, const android::Parcel& data, android::Parcel* reply,
                                 uint32_t) override {
        const android::String16 token("android.ui.ISurfaceComposer");
        if (code != 1013 || !data.enforceInterface(token) || data.dataAvail() != 0) {
            return android::UNKNOWN_TRANSACTION;
        }
        return reply->writeInt32(77);
    }
};

}  // namespace

TEST(FileUtils, getFileReadsUpTo127BytesOrAZero) {
    struct {
        std::string content;
        std::string text;
    } const rows[] = {
            {"1\n", "1\n"},
            {"", ""},
            {std::string(127, 'a'), std::string(127, 'a')},
            {std::string(128, 'a'), std::string(127, 'a')},
            {std::string("a\0b", 3), "a"},
    };
    for (const auto& row : rows) {
        phone().setNode(kNode, row.content);
        EXPECT_EQ(kelvo::getFile(kNode), row.text);
    }
}

TEST(FileUtils, failuresGiveEmptyTextOrMinusOne) {
    phone().addFolder("/sys/folder");
    LogCapture log;
    const std::string noFile = "open /sys/node failed(No such file or directory)";
    EXPECT_EQ(kelvo::getFile(kNode), "");
    EXPECT_EQ(log.count(ANDROID_LOG_DEBUG, noFile), 1U);
    EXPECT_EQ(kelvo::getFile("/sys/folder"), "");
    EXPECT_EQ(log.count(ANDROID_LOG_ERROR, "read file /sys/folder failed.(Is a directory)"), 1U);
    EXPECT_EQ(kelvo::writeFile(kNode, "1"), -1);
    EXPECT_EQ(log.count(ANDROID_LOG_ERROR, noFile), 1U);
    EXPECT_EQ(phone().node(kNode), std::nullopt);
}

TEST(FileUtils, writeFileDoesNotTruncate) {
    phone().setNode(kNode, "12345");
    EXPECT_EQ(kelvo::writeFile(kNode, "ab"), 0);
    EXPECT_EQ(phone().node(kNode), "ab345");
    EXPECT_EQ(kelvo::writeFile(kNode, ""), -1);
}

TEST(FileUtils, chipRecordIsReadAsFarAsItGoes) {
    const std::string bytes = littleEndian(20) + littleEndian(0x907) + littleEndian(0x8a00) +
                              littleEndian(1) + littleEndian(2);
    phone().setNode(kNode, bytes);
    kelvo::tag_chipid record = {};
    LogCapture log;
    EXPECT_EQ(kelvo::getMtkChipVersion(kNode, record), 0);
    EXPECT_EQ(record.sw_ver, 2U);
    EXPECT_EQ(log.count(ANDROID_LOG_ERROR, "hw_code 1 0x907  0x8a00 V1 node\n"), 1U);
    phone().setNode(kNode, bytes.substr(0, 19));
    kelvo::getMtkChipVersion(kNode, record);
    EXPECT_EQ(log.count(ANDROID_LOG_ERROR, "fread error, ret:0\n"), 1U);
    kelvo::tag_chipid untouched = {1, 2, 3, 4, 5};
    kelvo::getMtkChipVersion("/missing", untouched);
    EXPECT_EQ(untouched.hw_code, 2U);
}

TEST(FileUtils, frameCounterIsAskedOfTheCompositor) {
    const android::sp<android::LocalServiceManager> services = new android::LocalServiceManager();
    android::setDefaultServiceManager(services);
    const android::String16 name("SurfaceFlinger");
    LogCapture log;
    EXPECT_EQ(kelvo::getGlobalFrames(), -1);
    EXPECT_EQ(log.count(ANDROID_LOG_ERROR, "unable to get surfaceflinger"), 1U);
    services->addService(name, new Compositor());
    EXPECT_EQ(kelvo::getGlobalFrames(), 77);
    services->addService(name, new android::BBinder());
    EXPECT_EQ(kelvo::getGlobalFrames(), -1);
}
