#include "config/ConfigCipher.h"

#include <gtest/gtest.h>

#include <ostream>

#include "StoredConfig.h"
#include "sim/ConfigStore.h"
#include "support/LogCapture.h"

using kelvo::decryptConfig;

namespace {

// S bytes of plain text that claim to hold `length` bytes of JSON.
std::string stored(uint32_t length, size_t size, char first = '{') {
    std::string plain = littleEndian(length) + first;
    plain.resize(size, 'x');
    return encryptBlocks(plain);
}

struct LengthRow {
    const char* what;
    uint32_t length;
    size_t size;
    bool isValid;
};

void PrintTo(const LengthRow& row, std::ostream* out) {
    *out << row.what;
}

class ConfigCipherLength : public testing::TestWithParam<LengthRow> {};

}  // namespace

TEST_P(ConfigCipherLength, decides) {
    const LengthRow& row = GetParam();
    LogCapture log;
    std::string text = "before";
    ASSERT_EQ(decryptConfig(stored(row.length, row.size), text), row.isValid ? 0 : -1);
    EXPECT_EQ(text.size(), row.isValid ? row.length : 6);
    const std::string refusal = "size in file is " +
                                std::to_string(static_cast<int32_t>(row.length)) +
                                " while block size is " + std::to_string(row.size) + "\n";
    EXPECT_EQ(log.count(ANDROID_LOG_ERROR, refusal), row.isValid ? 0U : 1U);
}

INSTANTIATE_TEST_SUITE_P(Rows, ConfigCipherLength,
                         testing::Values(LengthRow{"noFiller", 60, 64, true},
                                         LengthRow{"mostFiller", 44, 64, true},
                                         LengthRow{"tooMuchFiller", 43, 64, false},
                                         LengthRow{"beyondTheEnd", 61, 64, false},
                                         LengthRow{"nothing", 0, 16, true},
                                         // 16 - length - 4 is at most 16 modulo 2^32 for these.
                                         LengthRow{"wrapsToMostFiller", 0xfffffffcU, 16, false},
                                         LengthRow{"wraps", 0xffffffffU, 16, false},
                                         LengthRow{"largest", 0xffffffffU, 64, false}),
                         [](const auto& row) { return row.param.what; });

TEST(ConfigCipher, roundTripsEveryLengthModuloTheBlock) {
    for (size_t size = 1; size <= 33; ++size) {
        const std::string json = "{" + std::string(size - 1, 'a');
        std::string text;
        EXPECT_EQ(decryptConfig(kelvo::encryptConfig(json), text), 0);
        EXPECT_EQ(text, json);
    }
}

TEST(ConfigCipher, refusesTextThatDoesNotBeginWithBrace) {
    std::string text;
    EXPECT_EQ(decryptConfig(stored(12, 16, '['), text), -1);
    EXPECT_EQ(decryptConfig(stored(12, 16, '{'), text), 0);
}

TEST(ConfigCipher, acceptsRaggedFileWhoseLastBlockIsFiller) {
    const std::string whole = stored(12, 32);
    std::string text;
    EXPECT_EQ(decryptConfig(whole.substr(0, 17), text), 0);
    EXPECT_EQ(text, "{" + std::string(11, 'x'));
    EXPECT_EQ(decryptConfig(whole.substr(0, 31), text), 0);
    EXPECT_EQ(decryptConfig(whole.substr(0, 15), text), -1);  // the length itself is noise
}

TEST(ConfigCipher, refusesEmptyInput) {
    LogCapture log;
    std::string text;
    EXPECT_EQ(decryptConfig("", text), -1);
    EXPECT_EQ(log.count(ANDROID_LOG_ERROR, "decryptConfig, Invalid blkLen:0"), 1U);
}
