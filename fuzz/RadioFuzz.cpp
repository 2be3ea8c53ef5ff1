// What framework clients tell of the radios: the texts, and the power that comes of them.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>
#include <vector>

#include "heat/RadioTexts.h"
#include "heat/TableInterpolation.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

namespace {

struct Row {
    float rsrp;
    float current;
};

}  // namespace

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const std::vector<Row> table = {{-120, 600}, {-100, 300}, {-100, 200}, {-80, 100}};
    const kelvo::CellularSignal signal = kelvo::parseCellularSignal(text);
    interpolateTable(table, &Row::rsrp, &Row::current,
                     static_cast<float>(signal.ssRsrp | signal.rsrp));
    const kelvo::Traffic traffic = kelvo::parseTraffic(text);
    kelvo::mobileTraffic(traffic);
    kelvo::WifiSignal wifi;
    const int fields = kelvo::parseWifiSignal(text, wifi);
    if (fields < 0 || fields > 6 || kelvo::wifiEnergy(wifi, kelvo::otherTraffic(traffic)) < 0) {
        std::abort();
    }
    return 0;
}
