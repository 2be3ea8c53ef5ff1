// What framework clients tell of the radios: the texts, and the power that comes of them.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>
#include <vector>

#include "Target.h"
#include "heat/RadioTexts.h"
#include "heat/TableInterpolation.h"

namespace {

struct Row {
    float rsrp;
    float current;
};

}  // namespace

void fuzzRadio(Bytes data) {
    const std::string_view text = textOf(data);
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
}
