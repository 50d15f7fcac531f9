#include "gif/first_image.h"

#include "platform/faults.h"
#include "tests/support/test_blocks.h"

TEST(FirstImage, WhereItIsFound) {
    const std::tuple<const char*, Bytes, const char*, int, Failure> cases[] = {
        {"first of two", Start().SmallImage(0x40).SmallImage(), "12 00", 2, Failure::kNone},
        {"own palette", Start().SmallImage(0x84), "12 30", 5, Failure::kNone},
        {"no palette", Start(0).SmallImage(), "(none)", 0, Failure::kDamaged},
        {"behind a control block", Start().Control(0).SmallImage(), "12 30", 2, Failure::kNone},
        {"behind texts", Start().Comment(",").Extension(1, std::string(13, 'x'), ",,").SmallImage(), "12 30", 2,
         Failure::kNone},
        {"behind an application", Start().Extension(0xFF, "\x0BXMP DataXMP", ",,").SmallImage(), "12 30", 2,
         Failure::kNone},
        {"behind the trailer, as an extension", Start().Add({0x3B, 0xFE, 0}).SmallImage(), "12 30", 2, Failure::kNone},
        {"behind a zero byte", Start().Add({0, 0xFE, 0}).SmallImage(), "(none)", 0, Failure::kDamaged},
        {"no GIF", GifBytes().Repeat(0x2C, 300), "(none)", 0, Failure::kNotGif},
        {"corrupt", Start().ImageHead(1, 1, 0).Add({2, 1, 7, 0}), "(none)", 0, Failure::kDamaged},
    };
    for (const auto& [what, bytes, pixels, itsDepth, why] : cases) {
        File file;
        file.OpenMemory(bytes.data(), bytes.size());
        Result<FirstImage> image = ReadFirstImage(file);
        Block block;
        block.data = image->bitmap;
        EXPECT_EQ(PixelsOf(block), pixels) << what;
        EXPECT_EQ(image->depth, itsDepth) << what;
        EXPECT_EQ(image.Why(), why) << what;
    }
}

TEST(FirstImage, NoneWhenTheFileCannotBeRead) {
    TempFolder folder;
    const std::string path = folder.Path("large.gif");
    GifBytes bytes = Start().ImageHead(400, 300, 0).Add({2}).SubBlocks(std::string(200000, '\0'));
    WriteAll(path, bytes.Add({0x3B}));
    long n = 0;
    for (bool failed = true; failed; ++n) {
        faults.onlyOne = true;
        faults.readsUntilFailure = n;
        Result<FirstImage> image = ReadFirstImage(path);
        failed = faults.readsUntilFailure == Faults::kPast;
        faults = {};
        EXPECT_EQ(image.Why(), failed ? Failure::kCantRead : Failure::kNone) << n;
        EXPECT_EQ(image.Reason().empty(), !failed) << n;
    }
    EXPECT_GT(n, 3) << "too few reads to tell anything";
}
