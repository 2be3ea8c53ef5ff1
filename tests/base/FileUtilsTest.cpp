#include "base/FileUtils.h"

#include <gtest/gtest.h>

#include "support/LogCapture.h"
#include "support/Phone.h"

namespace {

constexpr char kNode[] = "/sys/node";

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
    EXPECT_EQ(log.errors("read file /sys/folder failed.(Is a directory)"), 1U);
}

TEST(FileUtils, writeFileNeitherCreatesNorTruncates) {
    EXPECT_EQ(kelvo::writeFile(kNode, "1"), -1);
    EXPECT_EQ(phone().node(kNode), std::nullopt);
    phone().setNode(kNode, "12345");
    EXPECT_EQ(kelvo::writeFile(kNode, "a"), 0);
    EXPECT_EQ(phone().node(kNode), "a2345");
    EXPECT_EQ(kelvo::writeFile(kNode, ""), -1);
}

TEST(FileUtils, chipRecordNeedsAllItsBytes) {
    kelvo::tag_chipid record = {};
    EXPECT_EQ(kelvo::getMtkChipVersion(kNode, record), -1);
    for (const auto& [size, result] : {std::pair(19, -1), std::pair(20, 0)}) {
        phone().setNode(kNode, std::string(static_cast<size_t>(size), 'a'));
        EXPECT_EQ(kelvo::getMtkChipVersion(kNode, record), result) << size;
    }
}
