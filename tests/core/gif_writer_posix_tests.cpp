#include <gtest/gtest.h>

#include "tests/support/test_blocks.h"

TEST(GifWriterPosix, FullDiskIsReportedAndTheDeviceStays) {
    OwnedBlockList list;
    ASSERT_TRUE(NewDocument(&list));
    EXPECT_FALSE(WriteGifFile(list, "/dev/full"));
    EXPECT_TRUE(FileExists("/dev/full"));
    EXPECT_TRUE(WriteGifFile(list, "/dev/null"));
    EXPECT_TRUE(FileExists("/dev/null"));
}
