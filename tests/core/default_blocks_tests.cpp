#include "gif/default_blocks.h"

#include <gtest/gtest.h>

#include <cstring>

#include "editing/palette_match.h"
#include "gif/descriptor.h"
#include "imaging/standard_palette.h"
#include "platform/prompts.h"
#include "resources/string_ids.h"
#include "tests/support/fault_loop.h"
#include "tests/support/gif_bytes.h"
#include "tests/support/scripted_prompts.h"
#include "tests/support/test_blocks.h"

namespace {

class DefaultBlocks : public testing::Test {
protected:
    DefaultBlocks() {
        prompts = {};
        paletteChoiceForInsert = kAskForPalette;
        EXPECT_TRUE(NewDocument(&list_));
        WriteAll(path_, GifBytes().Header("GIF89a", 9, 9, 0x82).SmallImage().Add({0x3B}));
    }
    ~DefaultBlocks() override {
        faults = {};
        paletteChoiceForInsert = kAskForPalette;
    }

    bool Make(Block* block, uint16_t kind, const char* path = nullptr) {
        return MakeDefaultBlock(nullptr, &list_, block, kind, nullptr, path);
    }

    OwnedList list_;
    TempFolder folder_;
    std::string path_ = folder_.Path("p\xC3\xA9.gif");
};

bool IsZeroed(const Block& block) {
    static const Block zero = {};
    return memcmp(block.descriptor, zero.descriptor, kDescriptorBytes) == 0 && !block.kind && !block.data &&
           !block.name && !block.aux && !block.dataLength;
}

constexpr char kNewText[] = "This space for rent...";

}  // namespace

TEST_F(DefaultBlocks, NewDocumentIsOneHeader) {
    ASSERT_EQ(KindsOf(list_), "1");
    Block header = BlockAt(list_, 0);
    EXPECT_EQ(header.position, 0);
    EXPECT_EQ(header.owner, &list_);
    EXPECT_EQ(memcmp(header.descriptor, "GIF89a\x80\x02\xE0\x01\x87\x00\x00", 13), 0);
    RgbTriples web;
    StandardPalette(web, nullptr, kPaletteWeb);
    EXPECT_EQ(memcmp(header.palette, web, kPaletteBytes), 0);
}

TEST_F(DefaultBlocks, DescriptorsAndTexts) {
    struct Case {
        uint16_t kind;
        Bytes descriptor;
        std::string text;
    } const cases[] = {
        {kControlBlock, {4, 0, 1, 0, 0, 0}, "(none)"},
        {kPlainTextBlock, {12, 0, 0, 0, 0, 80, 0, 25, 0, 8, 16, 255, 0}, kNewText},
        {kCommentBlock, {22, 0}, kNewText},
        {kLoopBlock, GifBytes().Add({11}).Text("NETSCAPE2.0").Add({3, 1, 0, 0, 0}), "(none)"},
    };
    for (const Case& c : cases) {
        OwnedBlock block;
        ASSERT_TRUE(Make(&block, c.kind));
        EXPECT_EQ(block.kind, c.kind);
        EXPECT_EQ(block.owner, &list_);
        EXPECT_EQ(TextOf(block), c.text);
        Bytes descriptor = c.descriptor;
        descriptor.resize(kDescriptorBytes);
        EXPECT_EQ(Bytes(block.descriptor, block.descriptor + kDescriptorBytes), descriptor) << c.kind;
    }
}

TEST_F(DefaultBlocks, KindsThatCannotBeMade) {
    for (int number : {0, 5, 8, 9, 10, 65535}) {
        auto kind = static_cast<uint16_t>(number);
        Block block;
        memset(&block, 0xAA, sizeof block);
        EXPECT_FALSE(Make(&block, kind));
        EXPECT_TRUE(IsZeroed(block)) << kind;
        // A bitmap that came along goes too, or the leak checker tells.
        EXPECT_FALSE(MakeDefaultBlock(nullptr, &list_, &block, kind, CreateImageBitmap(2, 2, nullptr, 8), "x"));
    }
    EXPECT_EQ(list_.count, 1u);
}

TEST_F(DefaultBlocks, PlainTextTakesTheBrightestIndexOfThePalette) {
    Block header = BlockAt(list_, 0);
    for (auto [packed, index] : {std::pair{0x82, 7}, {0x80, 1}, {0x02, 0}}) {
        PutHeaderFields(&header, {1, 1, static_cast<uint8_t>(packed), 0, 0});
        PutBlock(&list_, header, 0);
        OwnedBlock block;
        ASSERT_TRUE(Make(&block, kPlainTextBlock));
        EXPECT_EQ(GetPlainTextFields(block).foregroundIndex, index);
    }
}

TEST_F(DefaultBlocks, ImageOfAFile) {
    paletteChoiceForInsert = kPaletteRemap + 7;  // keep
    OwnedBlock image;
    ASSERT_TRUE(Make(&image, kImageBlock, path_.c_str()));
    EXPECT_EQ(PixelsOf(image), "12 30");
    ImageFields fields = GetImageFields(image);
    EXPECT_EQ(fields.width, 2);
    EXPECT_EQ(fields.height, 2);
    EXPECT_EQ(fields.packed & ~kSizeCode, 0) << "no palette of its own in the file to be";
    char name[kNameBytes];
    EXPECT_TRUE(GetBlockName(name, image));
    EXPECT_STREQ(name, "p\xE9.gif");
    EXPECT_EQ(image.palette[2], (RgbTriple{2, 4, 6}));

    Block none;
    EXPECT_FALSE(Make(&none, kImageBlock, folder_.Path("none.gif").c_str()));
    EXPECT_TRUE(IsZeroed(none));
    EXPECT_FALSE(Make(&none, kImageBlock)) << "the question for a file was cancelled";
}

TEST_F(DefaultBlocks, ImageOfABitmap) {
    struct Case {
        int depth;
        const char *path, *name;
        int packed;
    } const cases[] = {
        {1, nullptr, "", 0}, {2, "C:\\a\\b.gif", "b.gif", 3}, {8, "/x/y.z", "y.z", 7}, {24, "c:d", "d", 7}};
    for (const Case& c : cases) {
        OwnedBlock image;
        MemoryHandle bitmap = CreateImageBitmap(3, 5, nullptr, c.depth);
        ASSERT_TRUE(MakeDefaultBlock(nullptr, &list_, &image, kImageBlock, bitmap, c.path));
        EXPECT_EQ(image.data, bitmap);
        EXPECT_EQ(GetImageFields(image).packed, c.packed);
        EXPECT_EQ(GetImageFields(image).height, 5);
        char name[kNameBytes];
        EXPECT_EQ(GetBlockName(name, image), c.path != nullptr);
        EXPECT_STREQ(name, c.name);
    }
    EXPECT_TRUE(prompts.messages.empty());
}

TEST_F(DefaultBlocks, ExhaustedMemoryLeavesNothing) {
    for (uint16_t kind : {kHeaderBlock, kImageBlock, kControlBlock, kPlainTextBlock, kCommentBlock, kLoopBlock}) {
        auto attempt = [&](FaultRound& round) {
            prompts = {};
            paletteChoiceForInsert = kPaletteRemap;
            Block block;
            bool made = Make(&block, kind, path_.c_str());
            round.End();
            EXPECT_TRUE(made || IsZeroed(block));
            if (round.IsUndisturbed()) {
                EXPECT_TRUE(made);
            }
            bool isText = kind == kPlainTextBlock || kind == kCommentBlock;
            if (isText && !made) {
                EXPECT_EQ(prompts.messages, std::vector<std::string>{LoadStr(IDS_OUT_OF_MEMORY)});
            }
            // Only an image that could not be decoded is still made: blank.
            if (made && !round.IsUndisturbed() && kind != kImageBlock) {
                EXPECT_EQ(kind, kPlainTextBlock);
            }
            FreeBlock(&block);
        };
        ForEachFault(&Faults::allocationsUntilFailure, attempt);
        ForEachFault(&Faults::locksUntilFailure, attempt);
    }
    auto document = [](FaultRound& round) {
        OwnedList list;
        bool made = NewDocument(&list);
        round.End();
        EXPECT_EQ(made, round.IsUndisturbed());
        EXPECT_EQ(list.count, made ? 1u : 0u);
    };
    EXPECT_EQ(ForEachFault(&Faults::allocationsUntilFailure, document), 1);
    EXPECT_EQ(ForEachFault(&Faults::locksUntilFailure, document), 2);
}
