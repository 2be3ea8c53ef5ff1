#include "config/PlatformTable.h"

#include <algorithm>
#include <iterator>

namespace kelvo {

namespace {

struct PlatformRecord {
    int32_t id;
    char name[20];
};

// The place in the table counts. The id is never read: it repeats the index, but for SM8550, whose
// stored id is 39.
constexpr PlatformRecord kPlatforms[] = {
        {0, "MSM8953"}, {1, "MSM8976"}, {2, "MSM8976PRO"}, {3, "SDM660"},  {4, "MT6750"},
        {5, "MT6771"},  {6, "SDM845"},  {7, "SDM450"},     {8, "SDM670"},  {9, "SDM710"},
        {10, "SM6125"}, {11, "SM6375"}, {12, "SM7150"},    {13, "SM7250"}, {14, "SM8250"},
        {15, "MT6885"}, {16, "SM7125"}, {17, "MT6779"},    {18, "MT6853"}, {19, "MT6873"},
        {20, "SM4250"}, {21, "MT6769"}, {22, "MT6785"},    {23, "MT6765"}, {24, "SM8350"},
        {25, "SM8150"}, {26, "SM4350"}, {27, "MT6833"},    {28, "SM7225"}, {29, "SM6115"},
        {30, "SM6225"}, {31, "MT6891"}, {32, "MT6877"},    {33, "MT6781"}, {34, "SM8450"},
        {35, "SM7325"}, {36, "MT6983"}, {37, "MT6895"},    {38, "SM7450"}, {39, "SM8475"},
        {39, "SM8550"}, {41, "MT6789"}, {42, "MT6985"},    {43, "SM7475"}, {44, "MT6835"},
};

struct ChipRecord {
    int32_t chipId;
    int32_t platform;
};

// Two chips are sold as MT6771; some older platforms have no chip here and are never found.
constexpr ChipRecord kChips[] = {
        {321, 6},   {339, 25},  {356, 14},  {365, 12},  {394, 10},  {400, 13},  {415, 24},
        {417, 20},  {443, 16},  {444, 29},  {454, 26},  {457, 34},  {459, 28},  {475, 35},
        {506, 38},  {507, 11},  {518, 30},  {519, 40},  {530, 39},  {591, 43},  {1799, 21},
        {1829, 17}, {1894, 23}, {1912, 5},  {1928, 5},  {2067, 22}, {2070, 15}, {2182, 19},
        {2311, 36}, {2384, 31}, {2393, 32}, {2441, 27}, {2454, 18}, {4198, 33}, {4466, 37},
        {4616, 41}, {4617, 44}, {4758, 42},
};

}  // namespace

const char* platformNameAt(int32_t index) {
    if (index < 0 || static_cast<size_t>(index) >= std::size(kPlatforms)) {
        return "";
    }
    return kPlatforms[index].name;
}

int32_t platformOfChip(int32_t chipId) {
    const auto* chip = std::ranges::find(kChips, chipId, &ChipRecord::chipId);
    return chip != std::end(kChips) ? chip->platform : -1;
}

bool isDetectablePlatform(std::string_view name) {
    return std::ranges::any_of(kChips, [name](const ChipRecord& chip) {
        return name == kPlatforms[chip.platform].name;
    });
}

}  // namespace kelvo
