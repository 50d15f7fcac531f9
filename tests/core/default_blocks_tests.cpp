#include "gif/default_blocks.h"

#include <algorithm>

#include "editing/palette_match.h"
#include "imaging/standard_palette.h"
#include "platform/faults.h"
#include "tests/support/scripted_answers.h"
#include "tests/support/test_blocks.h"

using namespace std::string_literals;

namespace {

class DefaultBlocks : public testing::Test {
protected:
    DefaultBlocks() {
        EXPECT_TRUE(NewDocument(&list_));
        WriteAll(path_, GifBytes().Header("GIF89a", 9, 9, 0x82).SmallImage().Add({0x3B}));
    }

    Result<Block> Import(const std::string& path) {
        ScriptedAnswers answers;
        answers.paletteChoices = {PaletteChoice::kKeepPixels};
        const Result<std::vector<Block>> blocks = ImportImage(&list_, path, answers);
        if (!blocks) return {blocks.Why(), blocks.Reason()};
        EXPECT_EQ(blocks->size(), 1u) << "a control that a GIF file does not get";
        return blocks->back();
    }

    BlockList list_;
    TempFolder folder_;
    std::string path_ = folder_.Path("p\xC3\xA9.gif");
};

}  // namespace

TEST_F(DefaultBlocks, DescriptorsAndTexts) {
    const std::tuple<uint16_t, std::string, std::string> cases[] = {
        {kHeaderBlock, "GIF89a\x80\x02\xE0\x01\x87"s, "(none)"},
        {kControlBlock, "\x04\0\x01"s, "(none)"},
        {kPlainTextBlock, "\x0C\0\0\0\0\x50\0\x19\0\x08\x10\xFF"s, "This space for rent..."},
        {kCommentBlock, "\x16", "This space for rent..."},
        {kLoopBlock, "\x0BNETSCAPE2.0\x03\x01", "(none)"},
    };
    for (const auto& [kind, descriptor, text] : cases) {
        Result<Block> block = MakeBlock(&list_, kind);
        EXPECT_EQ(block->kind, kind);
        EXPECT_EQ(block->owner, &list_);
        EXPECT_EQ(TextOf(*block), text);
        EXPECT_EQ(DescriptorOf(*block), descriptor);
    }
    Block header = BlockAt(list_, 0);
    for (auto [packed, brightest] : {std::pair{0x82, 7}, {0x80, 1}, {0x02, 0}}) {
        PutHeaderFields(&header, {1, 1, static_cast<uint8_t>(packed), 0, 0});
        PutBlock(&list_, header, 0);
        EXPECT_EQ(GetPlainTextFields(*MakePlainTextBlock(&list_)).foregroundIndex, brightest);
    }
    DestroyBlockList(&list_);
    ASSERT_TRUE(NewDocument(&list_));
    ASSERT_EQ(KindsOf(list_), "1");
    EXPECT_EQ(DescriptorOf(BlockAt(list_, 0)), std::get<1>(cases[0]));
    RgbTriples web;
    StandardPalette(web, nullptr, kPaletteWeb);
    EXPECT_TRUE(std::equal(web, std::end(web), list_.blocks[0].palette.Colours()));
}

TEST_F(DefaultBlocks, WhatCannotBeMade) {
    for (int kind : {0, 2, 5, 8, 10, 65535})
        EXPECT_EQ(MakeBlock(&list_, static_cast<uint16_t>(kind)).Why(), Failure::kNotAllowed);
    EXPECT_EQ(MakeImageBlock(&list_, nullptr).Why(), Failure::kNoMemory);
    for (uint16_t kind : {kHeaderBlock, kPlainTextBlock, kCommentBlock}) {
        faults.allocationsUntilFailure = 0;
        EXPECT_EQ(MakeBlock(&list_, kind).Why(), Failure::kNoMemory) << kind;
        faults = {};
    }
}

TEST_F(DefaultBlocks, ImageOfABitmap) {
    const int cases[][3] = {{8, 0, 7}, {8, 5, 4}, {4, 2, 1}, {1, 0, 0}, {24, 0, 7}};  // its bits, the file's, the code
    for (const auto& [bits, fileDepth, sizeCode] : cases) {
        Result<Block> image = MakeImageBlock(&list_, CreateImageBitmap(9, 5, nullptr, bits), fileDepth);
        const ImageFields fields = GetImageFields(*image);
        EXPECT_EQ(fields.width, 9);
        EXPECT_EQ(fields.height, 5);
        EXPECT_EQ(fields.packed, sizeCode);
    }
}

TEST_F(DefaultBlocks, ImageOfAFile) {
    const Block image = *Import(path_);
    EXPECT_EQ(PixelsOf(image), "12 30");
    EXPECT_EQ(DescriptorOf(image).substr(0, 7), "\0\0\0\0\x02\0\x02"s);
    EXPECT_EQ(GetImageFields(image).packed & ~kSizeCode, 0) << "no palette of its own in the file to be";
    EXPECT_EQ(NameOf(image), "p\xE9.gif");
    EXPECT_EQ(image.palette[2], (RgbTriple{2, 4, 6}));
    EXPECT_EQ(image.owner, &list_);
    const Result<Block> missing = Import(folder_.Path("none.gif"));
    EXPECT_EQ(missing.Why(), Failure::kCantOpen);
    EXPECT_NE(missing.Reason(), "");
}

TEST_F(DefaultBlocks, MemoryForTheNameIsMissed) {
    Failure last = Failure::kNone;
    for (long n = 0;; ++n) {
        faults.allocationsUntilFailure = n;
        const Failure why = Import(path_).Why();
        faults = {};
        if (why == Failure::kNone) break;
        last = why;
    }
    EXPECT_EQ(last, Failure::kNoMemory) << "the name comes last";
}
