#include "config/ConfigCipher.h"

#include <gtest/gtest.h>

#include "common/ConfigStore.h"
#include "support/LogCapture.h"

using kelvo::decryptConfig;

TEST(ConfigCipher, believesLengthThatLeavesAtMostABlockOfFiller) {
    // length (that the file claims for its JSON), size (of the file), isValid, why
    const std::tuple<size_t, size_t, bool, const char*> cases[] = {
            {60, 64, true, "no filler"},
            {44, 64, true, "a block of filler"},
            {43, 64, false, "too much filler"},
            {61, 64, false, "beyond the end"},
            {12, 17, true, "the ragged block is filler"},
            {12, 15, false, "the length itself is noise"},
            {11, 17, false, "a ragged block counts as a whole one"},
            {70000, 70016, true, "a length of three bytes"},
    };
    for (const auto& [length, size, isValid, why] : cases) {
        const std::string json = "{" + std::string(length - 1, 'x');
        std::string file = common::encryptConfig(json);
        file.resize(size);
        std::string text = "before";
        EXPECT_EQ(decryptConfig(file, text), isValid ? 0 : -1) << why;
        EXPECT_EQ(text, isValid ? json : "before") << why;
    }
}

TEST(ConfigCipher, refusesWhatIsNoConfiguration) {
    const std::string cases[] = {
            // Lengths of 2^32 - 4 and 2^32 - 1, for which the filler wraps to 16 and 13 bytes.
            "\xd4\xca\xf7\x4c\xbd\xcf\x47\x4a\x7f\xef\xef\x47\x33\x6b\xab\xfe",
            "\x79\x56\x94\x73\x59\x94\x86\x61\x22\xe8\xb3\xab\x51\xaa\xb7\x5c",
            common::encryptConfig("[{}]"),
            "",
    };
    LogCapture log;
    for (const std::string& file : cases) {
        std::string text;
        EXPECT_EQ(decryptConfig(file, text), -1);
    }
    EXPECT_EQ(log.errors("size in file is -4 while block size is 16\n"), 1U);
    EXPECT_EQ(log.errors("decryptConfig, Invalid blkLen:0"), 1U);
}
