#include "gif/logical_screen.h"

#include <gtest/gtest.h>

#include "gif/default_blocks.h"
#include "gif/descriptor.h"
#include "tests/support/test_blocks.h"

TEST(LogicalScreen, ReachesAsFarAsTheImages) {
    struct Case {
        const char* what;
        std::vector<ImageFields> images;
        int width, height;
    } const cases[] = {
        {"no image", {}, 640, 480},
        {"shrinks", {{0, 0, 10, 20, 0}}, 10, 20},
        {"grows", {{0, 0, 1000, 900, 0}}, 1000, 900},
        {"offsets count", {{5, 7, 10, 20, 0}, {30, 0, 1, 1, 0}}, 31, 27},
        {"nothing in one direction", {{0, 0, 0, 20, 0}}, 640, 20},
        {"image without pixels", {{0, 0, 0, 0, 0}}, 640, 480},
        {"edge beyond 16 bits", {{65535, 0, 2, 65535, 0}}, 65535, 65535},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        OwnedList list;
        ASSERT_TRUE(NewDocument(&list));
        HeaderFields before = GetHeaderFields(BlockAt(list, 0));
        for (const ImageFields& image : c.images) {
            Block block = {};
            block.kind = kImageBlock;
            PutImageFields(&block, image);
            Append(&list, block);
        }
        Append(&list, MakeText(kPlainTextBlock, "its position does not count"));
        EXPECT_TRUE(FitLogicalScreen(&list));
        HeaderFields after = GetHeaderFields(BlockAt(list, 0));
        EXPECT_EQ(after.screenWidth, c.width);
        EXPECT_EQ(after.screenHeight, c.height);
        EXPECT_EQ(after.packed, before.packed);
    }
    BlockList empty = {};
    EXPECT_FALSE(FitLogicalScreen(&empty));
}
