#include <gtest/gtest.h>
#include <unistd.h>

#include "platform/faults.h"
#include "tests/support/test_blocks.h"

TEST(GifWriterPosix, FullDiskIsReportedAndTheDeviceStays) {
    BlockList list;
    ASSERT_TRUE(NewDocument(&list));
    EXPECT_FALSE(WriteGifFile(list, "/dev/full"));
    EXPECT_TRUE(FileExists("/dev/full"));
    EXPECT_TRUE(WriteGifFile(list, "/dev/null"));
    EXPECT_TRUE(FileExists("/dev/null"));
}

// kQuirkSaveOverTarget
TEST(GifWriterPosix, FailureThroughALinkRemovesTheLink) {
    TempFolder folder;
    const std::string target = folder.Path("target.gif"), link = folder.Path("link.gif");
    WriteAll(target, "old");
    ASSERT_EQ(symlink("target.gif", link.c_str()), 0);
    BlockList list;
    ASSERT_TRUE(NewDocument(&list));
    faults.writesUntilFailure = 0;
    EXPECT_FALSE(WriteGifFile(list, link.c_str()));
    faults.writesUntilFailure = Faults::kNever;
    EXPECT_EQ(folder.Names(), std::vector<std::string>{"target.gif"});
    EXPECT_EQ(ReadAll(target), Bytes()) << "it was truncated before";
}
