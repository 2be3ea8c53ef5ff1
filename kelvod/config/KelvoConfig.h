#pragma once

#include <json/value.h>
#include <utils/Mutex.h>
#include <utils/Singleton.h>

#include <cstdint>
#include <set>
#include <string>
#include <vector>

namespace kelvo {

/**
 * The daemon's configuration: one JSON document, assembled from the newest main file, the
 * platform's sub-file and the override sections of platform and project. Lookups are thread-safe
 * and see either the old or the new document of a reload.
 */
class KelvoConfig : public android::Singleton<KelvoConfig> {
  public:
    /** Builds the document. 0, or -1 with the previous document still in force. */
    int loadConfig();
    /** The same, on request of the message loop. */
    int reload() { return loadConfig(); }

    /**
     * Copies the value at a key path (member names from the root; an empty path is the whole
     * document). 0, or -1 when a member on the way is missing, null, or not in an object.
     */
    int getConfig(Json::Value* out, std::vector<std::string> path) const;
    /** The same for an unsigned integer; -1 also when the value is none. */
    int getConfig(uint32_t* out, std::vector<std::string> path) const;

  private:
    friend class android::Singleton<KelvoConfig>;
    KelvoConfig();

    static int loadMain(Json::Value& root);
    static void loadSub(Json::Value& subRoot);
    int getKelvoConfig(Json::Value& root, const Json::Value& subRoot);

    // Guards the document and the paths that were found to lead through something that is no
    // object; a leaf.
    mutable android::Mutex mMutex;
    Json::Value mConfig GUARDED_BY(mMutex);
    mutable std::set<std::vector<std::string>> mReportedPaths GUARDED_BY(mMutex);
};

}  // namespace kelvo
