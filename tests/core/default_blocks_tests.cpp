#include "gif/default_blocks.h"

#include <cstring>

#include "editing/palette_match.h"
#include "imaging/standard_palette.h"
#include "platform/faults.h"
#include "tests/support/scripted_prompts.h"
#include "tests/support/test_blocks.h"

using namespace std::string_literals;

namespace {

class DefaultBlocks : public testing::Test {
protected:
    DefaultBlocks() {
        prompts = {};
        paletteChoiceForInsert = kPaletteRemap + 7;  // keep
        EXPECT_TRUE(NewDocument(&list_));
        WriteAll(path_, GifBytes().Header("GIF89a", 9, 9, 0x82).SmallImage().Add({0x3B}));
    }
    ~DefaultBlocks() override { paletteChoiceForInsert = kAskForPalette; }

    bool Make(Block* block, uint16_t kind, const char* path = nullptr, MemoryHandle bitmap = nullptr) {
        return MakeDefaultBlock(nullptr, &list_, block, kind, bitmap, path);
    }

    OwnedBlockList list_;
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
        OwnedBlock block;
        ASSERT_TRUE(Make(&block, kind));
        EXPECT_EQ(block.kind, kind);
        EXPECT_EQ(block.owner, &list_);
        EXPECT_EQ(TextOf(block), text);
        EXPECT_EQ(DescriptorOf(block), descriptor);
    }
    Block header = BlockAt(list_, 0);
    for (auto [packed, brightest] : {std::pair{0x82, 7}, {0x80, 1}, {0x02, 0}}) {
        PutHeaderFields(&header, {1, 1, static_cast<uint8_t>(packed), 0, 0});
        PutBlock(&list_, header, 0);
        OwnedBlock block;
        ASSERT_TRUE(Make(&block, kPlainTextBlock));
        EXPECT_EQ(GetPlainTextFields(block).foregroundIndex, brightest);
    }
    DestroyBlockList(&list_);
    ASSERT_TRUE(NewDocument(&list_));
    ASSERT_EQ(KindsOf(list_), "1");
    EXPECT_EQ(DescriptorOf(BlockAt(list_, 0)), std::get<1>(cases[0]));
    RgbTriples web;
    StandardPalette(web, nullptr, kPaletteWeb);
    EXPECT_EQ(memcmp(BlockAt(list_, 0).palette, web, kPaletteBytes), 0);
}

TEST_F(DefaultBlocks, WhatCannotBeMadeIsZeroed) {
    const std::string missing = folder_.Path("none.gif");
    const std::pair<uint16_t, const char*> cases[] = {
        {0, "x"}, {5, "x"}, {8, "x"}, {10, "x"}, {65535, "x"}, {kImageBlock, missing.c_str()}, {kImageBlock, nullptr}};
    for (const auto& [kind, path] : cases) {
        Block block;
        memset(&block, 0xAA, sizeof block);
        // The bitmap that came along goes too, or the leak checker tells.
        EXPECT_FALSE(Make(&block, kind, path, kind == kImageBlock ? nullptr : CreateImageBitmap(2, 2, nullptr, 8)));
        EXPECT_EQ(DescriptorOf(block), "") << kind;
        EXPECT_EQ(block.kind, 0) << kind;
        EXPECT_EQ(block.data, nullptr) << kind;
        EXPECT_EQ(block.name, nullptr) << kind;
        EXPECT_EQ(block.aux, nullptr) << kind;
        EXPECT_EQ(block.dataLength, 0u) << kind;
    }
}

TEST_F(DefaultBlocks, ImageOfAFile) {
    OwnedBlock image;
    ASSERT_TRUE(Make(&image, kImageBlock, path_.c_str()));
    EXPECT_EQ(PixelsOf(image), "12 30");
    EXPECT_EQ(DescriptorOf(image).substr(0, 7), "\0\0\0\0\x02\0\x02"s);
    EXPECT_EQ(GetImageFields(image).packed & ~kSizeCode, 0) << "no palette of its own in the file to be";
    EXPECT_EQ(NameOf(image), "p\xE9.gif");
    EXPECT_EQ(image.palette[2], (RgbTriple{2, 4, 6}));
}

TEST_F(DefaultBlocks, MemoryForTheNameIsMissed) {
    std::vector<std::string> told;
    for (long n = 0;; ++n) {
        OwnedBlock image;
        prompts = {};
        faults.allocationsUntilFailure = n;
        const bool made = Make(&image, kImageBlock, path_.c_str());
        faults = {};
        if (made) break;
        EXPECT_EQ(image.data, nullptr);
        told = prompts.messages;
    }
    EXPECT_EQ(told, std::vector<std::string>{LoadStr(IDS_OUT_OF_MEMORY)}) << "the name comes last";
}
