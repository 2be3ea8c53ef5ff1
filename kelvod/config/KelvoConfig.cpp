#include "config/KelvoConfig.h"

#include <errno.h>
#include <string.h>
#include <sys/stat.h>

#include <utility>

#include "base/DeviceRoot.h"
#include "base/Log.h"
#include "config/ConfigFiles.h"
#include "config/ConfigMerge.h"
#include "config/ConfigPath.h"
#include "config/ConfigText.h"
#include "config/PlatformAdaptor.h"

ANDROID_SINGLETON_STATIC_INSTANCE(kelvo::KelvoConfig)

namespace kelvo {

namespace {

constexpr int kOriginIndex = 0;
constexpr int kDataIndex = 1;
constexpr char kOriginPath[] = "/system_ext/etc/kelvo/kelvo.conf";
constexpr char kDataPath[] = "/data/zenta_lib/kelvo.conf";

class MergeLog : public MergeObserver {
  public:
    MergeLog(std::string platform, std::string project)
          : mPlatform(std::move(platform)), mProject(std::move(project)) {}

    void onSection(const OverrideSection& section, const Json::Value& content) override {
        switch (section.kind) {
            case OverrideSection::Kind::PLATFORM:
            case OverrideSection::Kind::PROJECT:
                break;
            case OverrideSection::Kind::PROJECT_GROUP:
            case OverrideSection::Kind::SUB_PROJECT_GROUP:
                KLOGE("reload from keyName: %s", section.name.c_str());
                break;
            case OverrideSection::Kind::SUB_FILE:
                KLOGD("%s, overrided by platform:%s subconfig", "getKelvoConfig",
                      mPlatform.c_str());
                break;
            case OverrideSection::Kind::SUB_PROJECT:
                KLOGD("overrided by project:%s sub config info:%s ", mProject.c_str(),
                      content.toStyledString().c_str());
                break;
        }
    }

    void onIgnoredSection(const OverrideSection& section) override {
        KLOGE("config section %s is not an object, ignored", section.name.c_str());
    }

    void onReplaced(const std::vector<std::string>&, const Json::Value&) override {}

  private:
    const std::string mPlatform;
    const std::string mProject;
};

}  // namespace

KelvoConfig::KelvoConfig() {
    loadConfig();
}

int KelvoConfig::loadConfig() {
    Json::Value root;
    Json::Value subRoot;
    const int index = loadMain(root);
    if (index < 0) {
        return -1;
    }
    // The copy on the data partition is complete by itself. That holds also when it was found to be
    // wrong and the origin's text stands in for it.
    if (index != kDataIndex) {
        loadSub(subRoot);
    }
    return getKelvoConfig(root, subRoot);
}

/** Parses the main file in force. Index of the file that was chosen first, or -1. */
int KelvoConfig::loadMain(Json::Value& root) {
    const std::string paths[] = {kOriginPath, kDataPath};
    std::string raw;
    std::string text;
    const int index = getFileContents(paths, 2, raw, text);
    if (index < 0) {
        KLOGE("Get file contents failed!");
        return -1;
    }
    if (text.find(kMainFileMark) == std::string::npos) {
        KLOGE("config file is wrong! try to load origin config");
        if (getFileContents(&paths[kOriginIndex], 1, raw, text) < 0) {
            KLOGE("Get file contents failed!");
            return -1;
        }
    }
    if (parseConfigText(text, root) != 0) {
        KLOGE("Parse config file failed!");
        return -1;
    }
    return index;
}

/** Parses the platform's sub-file; null when there is no usable one. */
void KelvoConfig::loadSub(Json::Value& subRoot) {
    const std::string path = "/system_ext/etc/kelvo/kelvo_" +
                             PlatformAdaptor::getInstance().getPlatformName() + ".conf";
    struct stat info = {};
    if (stat((deviceRoot() + path).c_str(), &info) != 0) {
        KLOGE("stat %s failed(%s), no sub config file...", path.c_str(), strerror(errno));
        return;
    }
    std::string raw;
    std::string text;
    if (getFileContents(&path, 1, raw, text) < 0) {
        KLOGE("Get sub file contents failed!");
    } else if (parseConfigText(text, subRoot) != 0) {
        KLOGE("Parse sub config file failed!");
        subRoot = Json::Value();
    }
    KLOGD("loadConfig() from:%s subRoot : %s", path.c_str(), subRoot.toStyledString().c_str());
}

int KelvoConfig::getKelvoConfig(Json::Value& root, const Json::Value& subRoot) {
    // Fetched before the lock: the adaptor's creation takes locks of its own.
    const PlatformAdaptor& adaptor = PlatformAdaptor::getInstance();
    const std::string platform = adaptor.getPlatformName();
    const std::string& project = adaptor.getProjectName();
    MergeLog log(platform, project);
    android::Mutex::Autolock lock(mMutex);
    mergeConfig(root, subRoot, platform, project, &log);
    mConfig = std::move(root);
    mReportedPaths.clear();
    KLOGD("getKelvoConfig result:%s ", mConfig.toStyledString().c_str());
    return 0;
}

int KelvoConfig::getConfig(Json::Value* out, std::vector<std::string> path) const {
    android::Mutex::Autolock lock(mMutex);
    const ConfigLookup found = lookUpConfig(mConfig, path);
    if (found.meetsNonObject) {
        const auto [reported, isNew] = mReportedPaths.insert(std::move(path));
        if (isNew) {
            KLOGE("config path %s leads through a value that is not an object",
                  joinConfigPath(*reported).c_str());
        }
    }
    if (found.value == nullptr) {
        return -1;
    }
    *out = *found.value;
    return 0;
}

int KelvoConfig::getConfig(uint32_t* out, std::vector<std::string> path) const {
    Json::Value value;
    if (getConfig(&value, std::move(path)) != 0) {
        return -1;
    }
    if (!value.isUInt()) {
        KLOGE("%s is not uint", value.toStyledString().c_str());
        return -1;
    }
    *out = value.asUInt();
    return 0;
}

}  // namespace kelvo
