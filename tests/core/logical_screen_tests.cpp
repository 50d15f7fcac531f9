#include "gif/logical_screen.h"

#include "tests/support/test_blocks.h"

TEST(LogicalScreen, ReachesAsFarAsTheImages) {
    const std::tuple<std::vector<ImageFields>, int, int> cases[] = {
        {{}, 640, 480},
        {{{0, 0, 10, 20, 0}}, 10, 20},  // kQuirkScreenShrinks
        {{{5, 7, 1000, 900, 0}, {1030, 0, 1, 1, 0}}, 1031, 907},
        {{{0, 0, 0, 20, 0}}, 640, 20},
        {{{0, 0, 20, 0, 0}}, 20, 480},
        {{{65535, 0, 2, 65535, 0}}, 65535, 65535},
    };
    for (const auto& [images, width, height] : cases) {
        BlockList list;
        ASSERT_TRUE(NewDocument(&list));
        for (const ImageFields& image : images) {
            Block block = OfKind(kImageBlock);
            PutImageFields(&block, image);
            Append(&list, block);
        }
        Append(&list, MakeText(kPlainTextBlock, "its position does not count"));
        EXPECT_TRUE(FitLogicalScreen(&list));
        HeaderFields after = GetHeaderFields(BlockAt(list, 0));
        EXPECT_EQ(after.screenWidth, width);
        EXPECT_EQ(after.screenHeight, height);
        EXPECT_EQ(after.packed, 0x87);
    }
    BlockList empty = {};
    EXPECT_FALSE(FitLogicalScreen(&empty));
}
