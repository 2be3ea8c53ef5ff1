// Configuration files, from their bytes to what the engines make of them while the phone warms and
// cools. An input that begins with a brace is texts, stored as the system stores them: main file,
// zero byte, platform's file, zero byte, copy on the data partition. Any other first byte: the rest
// are the bytes of the stored main file.

#include <string>

#include "FuzzPhone.h"
#include "Input.h"
#include "common/ConfigStore.h"
#include "sim/scenario/PhonePaths.h"

namespace {

constexpr char kPlatformPath[] = "/system_ext/etc/kelvo/kelvo_SM8450.conf";
constexpr int64_t kPasses = 11000;  // ms: at least two passes of the fitting loop
constexpr int32_t kHeatMonitored = 45000;
constexpr int32_t kCool = 25000;

void storeText(FuzzPhone& phone, std::string_view path, Bytes text) {
    if (text.empty()) {
        phone.perform(sim::SetNodes{{{std::string(path), {}}}});
    } else {
        phone.store(path, common::encryptConfig(textOf(text)));
    }
}

void storeInput(FuzzPhone& phone, Bytes data) {
    if (data.front() != '{') {
        phone.store(sim::kMainConfigPath, textOf(data.subspan(1)));
        return;
    }
    Input input(data);
    storeText(phone, sim::kMainConfigPath, input.upToZero());
    storeText(phone, kPlatformPath, input.upToZero());
    storeText(phone, sim::kDataConfigPath, input.upToZero());
}

}  // namespace

void fuzzLoad(Bytes data) {
    if (data.empty()) {
        return;
    }
    FuzzPhone& phone = FuzzPhone::get();
    storeInput(phone, data);
    phone.setZones(kHeatMonitored);
    phone.reload();
    phone.run(kPasses);
    phone.askAll();
    phone.setZones(kCool);
    phone.run(kPasses);
}
