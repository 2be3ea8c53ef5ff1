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
    const std::pair<std::string, std::string> cases[] = {
            {std::string(127, 'a'), std::string(127, 'a')},
            {std::string(128, 'a'), std::string(127, 'a')},
            {std::string("a\0b", 3), "a"},
    };
    for (const auto& [content, text] : cases) {
        phone().setNode(kNode, content);
        EXPECT_EQ(kelvo::getFile(kNode), text);
    }
    phone().addFolder("/sys/folder");
    LogCapture log;
    EXPECT_EQ(kelvo::getFile("/sys/folder"), "");
    EXPECT_EQ(log.count(ANDROID_LOG_ERROR, "read file /sys/folder failed.(Is a directory)"), 1U);
}

TEST(FileUtils, writeFileNeitherCreatesNorTruncates) {
    EXPECT_EQ(kelvo::writeFile(kNode, "1"), -1);
    EXPECT_EQ(phone().node(kNode), std::nullopt);
    phone().setNode(kNode, "12345");
    EXPECT_EQ(kelvo::writeFile(kNode, "ab"), 0);
    EXPECT_EQ(phone().node(kNode), "ab345");
    EXPECT_EQ(kelvo::writeFile(kNode, ""), -1);
}

TEST(FileUtils, frameCounterIsAskedOfTheCompositor) {
    const android::sp<android::IServiceManager> services = android::installLocalServiceManager();
    LogCapture log;
    EXPECT_EQ(kelvo::getGlobalFrames(), -1);
    EXPECT_EQ(log.count(ANDROID_LOG_ERROR, "unable to get surfaceflinger"), 1U);
    services->addService(android::String16("SurfaceFlinger"), new Compositor());
    EXPECT_EQ(kelvo::getGlobalFrames(), 77);
}
