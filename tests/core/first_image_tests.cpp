#include "gif/first_image.h"

#include <gtest/gtest.h>

#include "tests/support/fault_loop.h"
#include "tests/support/gif_bytes.h"
#include "tests/support/scripted_prompts.h"
#include "tests/support/test_blocks.h"

namespace {

GifBytes Start(int packed = 0x81) {
    return GifBytes().Header("GIF89a", 5, 4, packed);
}

}  // namespace

TEST(FirstImage, WhereItIsFound) {
    struct Case {
        const char* what;
        Bytes file;
        const char* pixels;
        int depth;
    } const cases[] = {
        {"right away", Start().SmallImage(), "12 30", 2},
        {"first of two", Start().SmallImage(0x40).SmallImage(), "12 00", 2},
        {"own palette", Start().SmallImage(0x84), "12 30", 5},
        {"own palette alone", Start(0).SmallImage(0x80), "11 10", 1},
        {"no palette", Start(0).SmallImage(), "(none)", 0},
        {"prefix", GifBytes().Repeat(7, 128).Add(Start()).SmallImage(), "12 30", 2},
        {"behind a control block", Start().Add({0x21, 0xF9, 4, 0, 0, 0, 0, 0}).SmallImage(), "12 30", 2},
        {"behind texts",
         Start()
             .Comment("x")
             .Extension(1,
                        "\x0C"
                        "abcdefghijkl",
                        ",,")
             .SmallImage(),
         "12 30", 2},
        {"behind a loop", Start().Extension(0xFF, "\x0BNETSCAPE2.0", ",,,").SmallImage(), "12 30", 2},
        {"behind a foreign application", Start().Extension(0xFF, "\x0BXMP DataXMP", ",,").SmallImage(), "12 30", 2},
        {"behind an unknown extension", Start().Extension(0x77, "", ",,").SmallImage(), "12 30", 2},
        {"behind the trailer, as an extension", Start().Add({0x3B, 0xFE, 0}).SmallImage(), "12 30", 2},
        {"behind a zero byte", Start().Add({0}).SmallImage(), "(none)", 0},
        {"none", Start().Comment("x"), "(none)", 0},
        {"no GIF", GifBytes().Repeat(0x2C, 300), "(none)", 0},
        {"descriptor cut", Start().Add({0x2C, 0, 0, 0, 0}), "(none)", 0},
        {"corrupt", Start().ImageHead(1, 1, 0).Add({2, 1, 7, 0}), "(none)", 0},
        {"bad code size", Start().ImageHead(2, 1, 0).Add({1, 1, 7, 0}), "00", 2},
        {"too large", Start().ImageHead(65535, 65535, 0x87).Add({2, 0}), "(none)", 0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        File file;
        file.OpenMemory(c.file.data(), c.file.size());
        OwnedBlock image;
        int depth = 0;
        image.data = ReadFirstImage(file, &depth);
        EXPECT_EQ(PixelsOf(image), c.pixels);
        EXPECT_EQ(depth, c.depth);
    }
}

TEST(FirstImage, TheUserIsAskedForAPath) {
    TempFolder folder;
    WriteAll(folder.Path("a.gif"), Start().SmallImage());
    int depth = 0;
    prompts = {};
    EXPECT_EQ(ReadFirstImage(nullptr, nullptr, &depth), nullptr) << "cancelled";
    prompts.gifFile = folder.Path("a.gif");
    OwnedMemory image(ReadFirstImage(nullptr, nullptr, &depth));
    EXPECT_TRUE(image);
    EXPECT_EQ(ReadFirstImage(nullptr, folder.Path("b.gif").c_str(), &depth), nullptr);
    prompts = {};
}

TEST(FirstImage, ExhaustedMemory) {
    TempFolder folder;
    std::string path = folder.Path("a.gif");
    WriteAll(path, Start().Comment("x").SmallImage());
    auto attempt = [&](FaultRound& round) {
        int depth = 0;
        OwnedBlock image;
        image.data = ReadFirstImage(nullptr, path.c_str(), &depth);
        round.End();
        // Without memory to decode with, the image is blank.
        std::string pixels = PixelsOf(image);
        EXPECT_TRUE(round.IsUndisturbed() ? pixels == "12 30" : pixels == "(none)" || pixels == "00 00")
            << round.Number() << " " << pixels;
    };
    EXPECT_GE(ForEachFault(&Faults::allocationsUntilFailure, attempt), 3);
    EXPECT_GE(ForEachFault(&Faults::locksUntilFailure, attempt), 2);
}
