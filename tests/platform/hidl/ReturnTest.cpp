#include <gtest/gtest.h>
#include <hidl/Status.h>

namespace android::hardware {
namespace {

Return<int32_t> dead() {
    return Status::fromStatusT(DEAD_OBJECT);
}

// A caller that does not look would take 0 for an answer: each of these ends the process.
TEST(ReturnTest, endsTheProcessWhenAnErrorIsNotLookedAt) {
    EXPECT_DEATH(dead(), "nobody looked: .*DEAD_OBJECT");
    EXPECT_DEATH((void)dead().description(), "nobody looked");
    EXPECT_DEATH(Return<void>(Status::fromExceptionCode(Status::EX_SECURITY, "go")),
                 "SECURITY.*go");
    EXPECT_DEATH((void)static_cast<int32_t>(dead()), "value of a failed");
    EXPECT_DEATH((void)(Return<int32_t>(dead()) = 1), "nobody looked");
}

TEST(ReturnTest, isHarmlessOnceLookedAt) {
    EXPECT_FALSE(dead().isOk());
    EXPECT_TRUE(dead().isDeadObject());
    EXPECT_EQ(7, dead().withDefault(7));
    Return<int32_t> later = 3;
    EXPECT_FALSE(later.isDeadObject());
    later = dead();
    EXPECT_FALSE(later.isOk());
    later = 4;
    EXPECT_EQ(4, later);
    EXPECT_EQ(4, later.withDefault(7));
}

}  // namespace
}  // namespace android::hardware
