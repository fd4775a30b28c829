// The downloader's walk through the ROM: 4,096 bursts of eight addresses in
// order, and the Retry rule that steps back one address.
#include "tools/rom_walk.h"

#include <gtest/gtest.h>

using vexorin::tools::RomStep;
using vexorin::tools::RomWalk;

namespace {
std::vector<std::uint8_t> goodReply() { return std::vector<std::uint8_t>(34, 0x36); }
std::vector<std::uint8_t> damagedReply() { return std::vector<std::uint8_t>(34, 0xC9); }
}  // namespace

TEST(RomWalk, WholeRomInOrderThenComplete)
{
    RomWalk walk;
    int expected = 0;
    int bursts = 0;
    for (;;) {
        const RomStep step = walk.next();
        if (step.kind == RomStep::Kind::Complete)
            break;
        ASSERT_EQ(step.kind, RomStep::Kind::Burst);
        ASSERT_EQ(step.request.size(), 24u);
        for (std::size_t i = 0; i < 24; i += 3) {
            ASSERT_EQ(step.request[i], 0xC9);
            ASSERT_EQ(step.request[i + 1] * 256 + step.request[i + 2], 0x8000 + expected);
            ++expected;
        }
        EXPECT_EQ(step.shownRegister * 256 + step.shownByte, 0x8000 + expected - 1);
        ASSERT_TRUE(walk.accept(goodReply()));
        ++bursts;
    }
    EXPECT_EQ(bursts, 4096);
    EXPECT_EQ(expected, 32768);
    EXPECT_EQ(walk.DownloadRegister, 256);
}

TEST(RomWalk, RetryStepsBackOneAddressNotEight)
{
    RomWalk walk;
    walk.next();
    walk.accept(goodReply());
    const RomStep failed = walk.next();  // 0x8008 .. 0x800F
    EXPECT_FALSE(walk.accept(damagedReply()));
    EXPECT_EQ(walk.DownloadByte, 14);
    const RomStep again = walk.next();
    EXPECT_EQ(failed.request[21 + 2], 15);
    EXPECT_EQ(again.request[2], 15);  // from the failed burst's last address
    EXPECT_EQ(again.request[23], 22);
}

TEST(RomWalk, AfterARetryThePageRunsPastItsEnd)
{
    RomWalk walk;
    walk.next();
    walk.accept(damagedReply());  // 0..7 failed: 7 is next
    while (walk.DownloadByte < 254) {
        walk.next();
        walk.accept(goodReply());
    }
    // 255 alone goes out bare, without CmdGo.
    const RomStep bare = walk.next();
    EXPECT_EQ(bare.kind, RomStep::Kind::SendOnly);
    EXPECT_EQ(bare.request, (std::vector<int>{0xC9, 128, 255}));
    EXPECT_EQ(walk.DownloadByte, 256);
    // 257 … 264: bytes that cannot be sent; the page never advances.
    const RomStep past = walk.next();
    EXPECT_EQ(past.kind, RomStep::Kind::Burst);
    EXPECT_EQ(past.request[2], 257);
    EXPECT_EQ(walk.DownloadRegister, 128);
}

TEST(RomWalk, RestartGoesBackToTheFirstAddress)
{
    RomWalk walk;
    walk.next();
    walk.restart();
    EXPECT_EQ(walk.DownloadRegister, 128);
    EXPECT_EQ(walk.DownloadByte, -1);
    EXPECT_EQ(walk.next().request[2], 0);
}
