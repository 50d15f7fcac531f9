#include <functional>
#include <numeric>

#include "gif/logical_screen.h"
#include "gif/source_bytes.h"
#include "platform/faults.h"
#include "tests/support/test_blocks.h"

using namespace std::string_literals;

namespace {

GifBytes Xmp() {
    return GifBytes().Extension(0xFF, "\x0BXMP DataXMP", "<x/>");
}

GifBytes Cut(size_t bytes, GifBytes from) {
    from.resize(from.size() - bytes);
    return from;
}

Bytes Written(const BlockList& list, const Identity* names = nullptr) {
    File file;
    EXPECT_TRUE(file.CreateMemory());
    EXPECT_TRUE(WriteWholeGif(list, file, names));
    return {file.Written().begin(), file.Written().end()};
}

std::string DamagesOf(const ReadReport& report) {
    std::string all;
    for (const Damage& damage : report.damages)
        all += std::to_string(damage.offset) + "/" + std::to_string(damage.block) + ": " + DescribeDamage(damage) +
               (IsHarmless(damage) ? " (harmless)\n" : "\n");
    return all;
}

GifBytes Moved(uint8_t left) {
    GifBytes image = GifBytes().SmallImage();
    image[1] = left;
    return image;
}

// Everything that a file may hold, and some that it may not.
GifBytes Everything() {
    return GifBytes()
        .Repeat(7, 128)
        .Add(Start(kFourColours, "GIF87a"))
        .Loop(3)
        .Add(Xmp())
        .Comment("one\rtwo\x01")
        .Add({0, 0})
        .Control(10)
        .SmallImage()
        .Extension(0x33, "", "unknown")
        .Add({0x55, 0x66})
        .Extension(0x01, "\x0C\1\0\2\0\3\0\4\0\5\6\1\2"s, "text")
        .Extension(0xFF, "\x0BKELMORnb1.0", "\0\0"s)
        .SmallImage(kFourColours)
        .Add({0x3B})
        .Text("the end");
}

std::vector<unsigned> ValuesOf(const Block& image) {
    ImageLock bitmap(image.data);
    std::vector<unsigned> values;
    for (int i = 0; i < bitmap->width * bitmap->height; ++i)
        values.push_back(GetImagePixel(bitmap, i % bitmap->width, i / bitmap->width));
    return values;
}

}  // namespace

TEST(Whole, EveryByteIsKeptAndEveryDamageTold) {
    using G = GifBytes;
    const std::tuple<const char*, Bytes, const char*, const char*> cases[] = {
        {"nothing wrong", Start().Control(1).SmallImage().Add({0x3B}), "132", ""},
        {"header only", Start(0), "1", "13/-1: the file ends without a trailer\n"},
        {"no header", G().Text("GIF89a").Repeat(0, 6), "", ""},
        {"everything", Everything(), "1756329482",
         "0/-1: there are bytes before the signature: 128 (harmless)\n204/4: 2 bytes start no block\n"
         "241/7: 2 bytes start no block\n311/-1: there are bytes behind the trailer: 7 (harmless)\n"},
        {"palette cut", G().Text("GIF89a").Repeat(0, 4).Add({0x81, 0, 0, 1, 2}), "1",
         "13/0: the file ends inside a colour table\n15/-1: the file ends without a trailer\n"},
        {"no palette at all", Start(0).SmallImage().Add({0x3B}), "12",
         "23/1: there is no palette for this image, whose colours are all black\n"},
        {"bad code", Start().ImageHead(2, 2, 0).Add({2, 2, 0xCC, 1, 0, 0x3B}), "12",
         "35/1: the image's data makes no sense after 1 pixel\n"},
        {"bad code behind the picture", Start().ImageHead(1, 1, 0).Add({2, 2, 0xCC, 1, 0, 0x3B}), "12",
         "35/1: the image's data makes no sense behind its last pixel (harmless)\n"},
        {"code size", Start().ImageHead(1, 1, 0).Add({12, 1, 7, 0, 0x3B}), "12",
         "35/1: the image's minimum code size is 12, so it can't be decoded\n"},
        {"pixels missing", Start().ImageHead(2, 2, 0).Add({2, 1, 0x4C, 0, 0x3B}), "12",
         "35/1: the image's data ends after 1 pixel\n"},
        {"too large", Start().ImageHead(65535, 65535, 0x87).Add({8, 1, 7, 0, 0x3B}), "12",
         "803/1: the image is too large for the memory\n"},
        {"image cut in its data", Start().ImageHead(2, 2, 0).Add({2, 9, 0x4C}), "12",
         "38/1: the file ends inside this block, after 1 pixel\n38/-1: the file ends without a trailer\n"},
        {"image cut before its data", Start().ImageHead(2, 2, 0), "12",
         "35/1: the file ends inside this block\n35/-1: the file ends without a trailer\n"},
        {"image cut in its palette", Cut(2, Start().ImageHead(2, 2, kFourColours)), "12",
         "45/1: the file ends inside a colour table\n45/-1: the file ends without a trailer\n"},
        {"image cut in its descriptor", Start().Add({0x2C, 0, 0, 0}), "1",
         "25/-1: the file ends where a block has just begun\n"},
        {"extension without a label", Start().Comment("c").Add({0x21}), "16",
         "30/-1: the file ends where a block has just begun\n"},
        {"control cut", Start().Add({0x21, 0xF9, 4, 0, 0}), "1", "25/-1: the file ends where a block has just begun\n"},
        {"control without its terminator", Start().Add({0x21, 0xF9, 4, 0, 0, 0, 0}), "13",
         "32/1: the file ends inside this block\n32/-1: the file ends without a trailer\n"},
        {"text cut", Start().Add({0x21, 0xFE, 9, 'a', 'b'}), "16",
         "30/1: the file ends inside this block\n30/-1: the file ends without a trailer\n"},
        {"control of five bytes", Start().Add({0x21, 0xF9, 5, 0, 7, 0, 0, 0, 0, 0x3B}), "13",
         "27/1: the block's fixed part has a size of 5\n"},
        {"control of three bytes", Start().Add({0x21, 0xF9, 3, 0, 7, 0, 0, 0x3B}), "19",
         "27/1: the block's fixed part has a size of 3\n"},
        {"control that goes on", Start().Add({0x21, 0xF9, 4, 0, 7, 0, 0, 1, 9, 0, 0x3B}), "13",
         "32/1: the block goes on behind its fixed part\n"},
        {"application block of ten bytes", Start().Extension(0xFF, "\x0ANETSCAPE2.", "\1\0\0"s).Add({0x3B}), "19",
         "27/1: the block's fixed part has a size of 10\n"},
        {"other netscape block", Start().Extension(0xFF, "\x0BNETSCAPE2.0", "\2\0\0"s).Add({0x3B}), "15", ""},
        {"zero after a text", Start().Comment("x").Add({0}).SmallImage().Add({0x3B}), "162",
         "30/2: 1 byte starts no block\n"},
        {"junk and no block", Start().Text("junk!"), "1", "25/-1: 5 bytes start no block\n"},
        {"junk with bytes like blocks", Start().Text("junk,!;").Repeat(0, 9).SmallImage(), "1",
         "25/-1: 6 bytes start no block\n32/-1: there are bytes behind the trailer: 25 (harmless)\n"},
        {"junk before an image", Start().Text("j,unk!").Repeat(1, 9).SmallImage().Add({0x3B}), "12",
         "25/1: 15 bytes start no block\n"},
        {"junk before an image off the screen", Start().Text("junk").Add(Moved(6)).Add({0x3B}), "12",
         "25/1: 4 bytes start no block\n"},
        {"junk like an image off the screen", Start().Text("junk").ImageHead(6, 6, 0).Add({2, 2, 0x4B, 0, 0x3B}), "1",
         "25/-1: 18 bytes start no block\n"},
    };
    for (const auto& [what, bytes, kinds, damages] : cases) {
        LoadedGif list(bytes, Manner::kWhole);
        EXPECT_EQ(list.result, *kinds ? kReadDone : kReadNotGif) << what;
        EXPECT_EQ(KindsOf(list), kinds) << what;
        EXPECT_EQ(DamagesOf(list.report), damages) << what;
        if (*kinds) {
            EXPECT_EQ(Written(list), bytes) << what;
        }
    }
}

TEST(Whole, DamagedPicturesGoAsFarAsTheirData) {
    auto pixels = [](const GifBytes& image) {
        LoadedGif list(Start().Add(image), Manner::kWhole);
        return PixelsOf(BlockAt(list, 1));
    };
    const GifBytes small = GifBytes().SmallImage();
    EXPECT_EQ(pixels(small), "12 30");
    EXPECT_EQ(pixels(Cut(1, small)), "12 30");
    EXPECT_EQ(pixels(Cut(2, small)), "12 30") << "the codes of a sub-block that is not whole";
    EXPECT_EQ(pixels(Cut(3, small)), "10 00") << "a row that is not whole";
    EXPECT_EQ(pixels(GifBytes().ImageHead(2, 2, 0).Add({2, 2, 0xCC, 1, 0})), "10 00") << "before a bad code";
    EXPECT_EQ(pixels(GifBytes().ImageHead(2, 2, 0).Add({0, 1, 0x4C, 0})), "(none)");
    // Code sizes that no encoder should use and most decoders take: 1, and 11, whose first code has 12 bits.
    EXPECT_EQ(pixels(GifBytes().ImageHead(2, 1, 0).Add({1, 1, 0b00000110, 0})), "10");
    EXPECT_EQ(pixels(GifBytes().ImageHead(2, 1, 0).Add({11, 5, 0x00, 0x18, 0x00, 0x03, 0x00, 0})), "13");
}

// Of one-bit pixels the first entry of the dictionary needs three bits: in the fast decoder, and in the thorough one,
// which takes over when there are more pixels than room.
TEST(Whole, CodesOfOneBitPixelsGrow) {
    CodeBits codes;
    for (auto [code, width] : {std::pair{2u, 2u}, {1u, 2u}, {0u, 2u}, {4u, 3u}, {6u, 3u}, {5u, 3u}, {7u, 4u}, {3u, 4u}})
        codes.Put(code, width);
    for (auto [width, height, pixels] : {std::tuple{13, 1, "1010101011010"}, {6, 2, "101010 101101"}}) {
        GifBytes image = GifBytes().ImageHead(width, height, 0).Add({1, static_cast<int>(codes.Packed().size())});
        LoadedGif list(Start().Add(image.Add(codes.Packed()).Add({0})), Manner::kWhole);
        EXPECT_EQ(PixelsOf(BlockAt(list, 1)), pixels);
    }
}

// The manners agree on what is regular, whatever each keeps besides.
TEST(Whole, SoundFilesAreReadAsInTheClassicManner) {
    const Bytes bytes = Start()
                            .Loop(3)
                            .Comment("one\rtwo\x01")
                            .Control(10)
                            .SmallImage()
                            .SmallImage(0x81)
                            .Extension(0x01, "\x0C\1\0\2\0\3\0\4\0\5\6\1\2"s, "text")
                            .Extension(0xFF, "\x0BKELMORnb1.0", "\1\0\2\0\2\0\4\0________A\0"s)
                            .Comment(std::string(40000, 'x'))
                            .Add({0x3B});
    LoadedGif whole(bytes, Manner::kWhole), classic(bytes);
    ASSERT_EQ(KindsOf(whole), KindsOf(classic));
    for (uint32_t i = 0; i < whole.count; ++i) {
        EXPECT_TRUE(SameContent(whole.blocks[i], classic.blocks[i])) << i;
        EXPECT_EQ(NameOf(whole.blocks[i]), NameOf(classic.blocks[i])) << i;
        EXPECT_EQ(whole.blocks[i].position, i);
        EXPECT_EQ(whole.blocks[i].owner, &whole);
    }
    EXPECT_EQ(NameOf(whole.blocks[4]), "A");
    EXPECT_EQ(Written(whole), bytes) << "texts of any length";
}

// Of two writings of a document, the first and the last byte at which they differ lie within a block's own bytes.
void ExpectOnlyBlockDiffers(const Bytes& before, const Bytes& after, const Block& block, const char* what) {
    size_t start = block.source.start + size_t{block.source.stray};
    size_t tail = before.size() - start - block.source.bytes;
    ASSERT_GE(after.size(), start + tail) << what;
    EXPECT_TRUE(std::equal(before.begin(), before.begin() + static_cast<ptrdiff_t>(start), after.begin())) << what;
    EXPECT_TRUE(std::equal(before.end() - static_cast<ptrdiff_t>(tail), before.end(),
                           after.end() - static_cast<ptrdiff_t>(tail)))
        << what;
    EXPECT_NE(before, after) << what;
}

TEST(Whole, AChangedBlockChangesNoOther) {
    const Bytes bytes = Everything();
    const std::pair<const char*, std::function<void(Block*)>> changes[] = {
        {"HEADER",
         [](Block* b) {
             PutHeaderFields(b, {99, 4, kFourColours, 1, 2});
         }},
        {"LOOP", [](Block* b) { PutLoopIterations(b, 500); }},
        {"APPLICATION-DEFINED", [](Block* b) { (void)SetBlockText(b, "new data", 8); }},
        {"COMMENT", [](Block* b) { (void)SetBlockText(b, "changed", 7); }},
        {"CONTROL",
         [](Block* b) {
             PutControlFields(b, {1, 77, 3});
         }},
        {"IMAGE", [](Block* b) { SetImagePixel(ImageWriteLock(&b->data), 0, 0, 2); }},
        {"UNKNOWN TYPE", [](Block* b) { (void)SetBlockText(b, "", 0); }},
        {"PLAIN TEXT",
         [](Block* b) {
             PutPlainTextFields(b, {1, 1, 1, 1, 1, 1, 1, 1});
         }},
        {"BLOCK NAMES", [](Block* b) { (void)SetBlockText(b, "\0\0\0", 3); }},
        {"IMAGE with a palette",
         [](Block* b) {
             (void)b->palette.SetEntry(2, {1, 1, 1});
         }},
    };
    uint32_t index = 0;
    for (const auto& [what, change] : changes) {
        LoadedGif list(bytes, Manner::kWhole);
        ASSERT_EQ(list.count, std::size(changes));
        const Block old = list.blocks[index];
        Block edited = old;
        bool differs = true;
        ASSERT_TRUE(StoreEdited(&list, edited, index, &differs));
        EXPECT_FALSE(differs) << what;
        EXPECT_EQ(Written(list), bytes) << what << " unchanged";
        change(&edited);
        ASSERT_TRUE(StoreEdited(&list, edited, index, &differs));
        EXPECT_TRUE(differs) << what;
        ExpectOnlyBlockDiffers(bytes, Written(list), old, what);
        LoadedGif again(Written(list), Manner::kWhole);
        EXPECT_EQ(KindsOf(again), KindsOf(list)) << what;
        EXPECT_TRUE(SameContent(again.blocks[index], list.blocks[index])) << what;
        ++index;
    }
    for (uint32_t gone = 1; gone < index; ++gone) {
        LoadedGif list(bytes, Manner::kWhole);
        const SourcePlace place = list.blocks[gone].source;
        RemoveBlocks(&list, {&gone, 1});
        Bytes rest = bytes;
        const auto start = rest.begin() + static_cast<ptrdiff_t>(place.start);
        rest.erase(start, start + static_cast<ptrdiff_t>(place.stray + place.bytes));
        EXPECT_EQ(Written(list), rest) << gone;
    }
}

// What was not changed of such a block is not to be lost: pixels that are no colours, codes behind the picture, what a
// text has beyond its room.
TEST(Whole, WhatOnlyMovedKeepsItsOtherBytes) {
    const GifBytes badCode = GifBytes().ImageHead(2, 2, 0).Add({2, 2, 0xCC, 1, 0});
    const GifBytes cut = GifBytes().ImageHead(2, 2, kFourColours).Add({2, 9, 0x4C});
    const GifBytes text =
        GifBytes().Extension(0x01, "\x0C\1\0\2\0\3\0\4\0\5\6\1\2"s, std::string(kMaxTextBytes + 1, 't'));
    const std::tuple<const char*, GifBytes, size_t> cases[] = {
        {"image", GifBytes().SmallImage(), 1}, {"bad code", badCode, 1}, {"cut", cut, 1}, {"text", text, 3}};
    for (const auto& [what, block, left] : cases) {
        GifBytes bytes = Start().Add({7, 7}).Add(block);
        LoadedGif list(bytes, Manner::kWhole);
        ASSERT_EQ(list.count, 2u) << what;
        Block edited = list.blocks[1];
        edited.descriptor[edited.kind == kImageBlock ? 0 : 1] = 2;
        bool differs = false;
        ASSERT_TRUE(StoreEdited(&list, edited, 1, &differs));
        EXPECT_TRUE(differs) << what;
        bytes[bytes.size() - block.size() + left] = 2;
        EXPECT_EQ(Written(list), bytes) << what;
    }
}

TEST(Whole, PixelsThatAreNoColoursStayWhatTheyAre) {
    const std::tuple<int, unsigned, std::vector<unsigned>> cases[] = {
        {0x80, 2, {1, 3, 2, 0}},  // of two colours, in the codes that these have at least
        {0x80, 4, {9, 3, 14, 1}},  {0x81, 4, {9, 3, 14, 1}},   {0x82, 4, {9, 3, 14, 1}},
        {0x80, 8, {0, 0, 0, 200}}, {0x83, 5, {31, 3, 17, 16}}, {0x86, 8, {255, 128, 127, 0}},
    };
    for (const auto& [packed, codeSize, pixels] : cases) {
        CodeBits codes;
        codes.Put(1u << codeSize, codeSize + 1);
        for (unsigned pixel : pixels) {
            codes.Put(pixel, codeSize + 1);
            codes.Put(1u << codeSize, codeSize + 1);
        }
        codes.Put((1u << codeSize) + 1, codeSize + 1);
        const Bytes data = codes.Packed();
        GifBytes bytes = Start(packed).ImageHead(2, 2, 0).Add({static_cast<int>(codeSize)});
        bytes.Add({static_cast<int>(data.size())}).Add(data).Add({0, 0x3B});
        LoadedGif list(bytes, Manner::kWhole);
        const std::string what = std::to_string(packed) + " in codes of " + std::to_string(codeSize);
        EXPECT_EQ(ValuesOf(BlockAt(list, 1)), pixels) << what;
        ASSERT_TRUE(MarkChanged(&list.blocks[1]));
        EXPECT_EQ(ValuesOf(BlockAt(LoadedGif(Written(list), Manner::kWhole), 1)), pixels) << what;
    }
}

TEST(Whole, TextsEndOnceWhateverTheirLength) {
    for (size_t length : {0u, 1u, 254u, 255u, 256u, 510u}) {
        BlockList list;
        ASSERT_TRUE(NewDocument(&list));
        const std::string text(length, 'x');
        for (uint16_t kind : {kCommentBlock, kUnknownBlock}) Append(&list, MakeText(kind, text));
        list.blocks[2].descriptor[0] = 0x44;
        const Bytes written = Written(list);
        Bytes expected = GifBytes().Comment(text).Extension(0x44, "", text).Add({0x3B});
        EXPECT_EQ(Bytes(written.end() - static_cast<ptrdiff_t>(expected.size()), written.end()), expected) << length;
    }
    BlockList list;
    ASSERT_TRUE(NewDocument(&list));
    Append(&list, OfKind(kCommentBlock));
    const Bytes written = Written(list), empty = GifBytes().Comment("").Add({0x3B});
    EXPECT_EQ(Bytes(written.end() - 4, written.end()), empty) << "a text that is gone is an empty one";
}

TEST(Whole, InterlacedImagesOfAnyHeightKeepAllRows) {
    for (int height = 1; height <= 18; ++height) {
        Block image = MakeImage(1, height, 8, kImageInterlaced);
        for (int y = 0; y < height; ++y) SetImagePixel(ImageWriteLock(&image.data), 0, y, static_cast<uint32_t>(y + 1));
        BlockList list;
        ASSERT_TRUE(NewDocument(&list));
        Append(&list, image);
        LoadedGif again(Written(list), Manner::kWhole);
        EXPECT_EQ(PixelsOf(BlockAt(again, 1)), PixelsOf(image)) << height;
    }
    // Rows 0, 2, 1 as other programs have them, and a pixel too many.
    CodeBits codes;
    for (unsigned code : {4u, 1u, 2u}) codes.Put(code, 3);
    for (unsigned code : {3u, 1u, 5u}) codes.Put(code, 3);
    Bytes data = codes.Packed();
    LoadedGif list(Start().ImageHead(1, 3, 0x40).Add({2, static_cast<int>(data.size())}).Add(data).Add({0, 0x3B}),
                   Manner::kWhole);
    EXPECT_EQ(PixelsOf(BlockAt(list, 1)), "1 3 2");
}

TEST(Whole, WhatIsCutOffIsEndedWhenSomethingFollows) {
    const Bytes comment = GifBytes().Comment("after").Add({0x3B});
    const std::tuple<const char*, GifBytes, GifBytes> cases[] = {
        {"in a sub-block", Start().Add({0x21, 0xFE, 9, 'a', 'b'}), Start().Comment("ab")},
        {"before a sub-block", Start().Add({0x21, 0xFE, 1, 'a', 9}), Start().Comment("a")},
        {"before the terminator", Start().Add({0x21, 0xFE, 1, 'a'}), Start().Comment("a")},
        {"in a local palette", Cut(1, Start().ImageHead(2, 2, 0x80)),
         Cut(1, Start().ImageHead(2, 2, 0x80)).Add({0, 2, 0})},
        {"in image data", Start().ImageHead(2, 2, 0).Add({2, 9, 0x4C}),
         Start().ImageHead(2, 2, 0).Add({2, 1, 0x4C, 0})},
        {"in the global palette", GifBytes().Text("GIF89a").Repeat(0, 4).Add({0x80, 0, 0, 1, 2}),
         GifBytes().Text("GIF89a").Repeat(0, 4).Add({0x80, 0, 0, 1, 2, 0, 0, 0, 0})},
    };
    for (const auto& [what, cut, ended] : cases) {
        LoadedGif list(cut, Manner::kWhole);
        EXPECT_EQ(Written(list), cut) << what;
        Block added = MakeText(kCommentBlock, "after");
        int selection = static_cast<int>(list.count) - 1;
        ASSERT_TRUE(InsertBlocks(&list, &selection, {&added, 1}));
        Bytes expected = GifBytes(ended).Comment("after");
        EXPECT_EQ(Written(list), expected) << what;
    }
}

TEST(Whole, ImagesWithoutPixelsKeepTheirData) {
    const Bytes bytes = Start().ImageHead(2, 2, kFourColours).Add({99, 3, 1, 2, 3, 0, 0x3B});
    LoadedGif list(bytes, Manner::kWhole);
    Block image = list.blocks[1];
    EXPECT_FALSE(image.data);
    PutImageFields(&image, {0x102, 3, 2, 2, GetImageFields(image).packed});
    bool differs;
    ASSERT_TRUE(StoreEdited(&list, image, 1, &differs));
    Bytes moved = bytes;
    moved[26] = 2, moved[27] = 1, moved[28] = 3;
    EXPECT_EQ(Written(list), moved);
    TempFolder folder;
    ASSERT_TRUE(WriteGifFile(list, folder.Path("classic.gif").c_str()));
    EXPECT_EQ(KindsOf(LoadedGif(ReadAll(folder.Path("classic.gif")), Manner::kWhole)), "126") << "classically, too";
}

TEST(Whole, TheFirstExtensionMakesItGif89a) {
    const Block comment = MakeText(kCommentBlock, "c"), image = MakeImage(1, 1, 2);
    const std::tuple<const char*, GifBytes, const Block*, const char*> cases[] = {
        {"first extension", Start(kFourColours, "GIF87a").SmallImage(), &comment, "GIF89a"},
        {"image", Start(kFourColours, "GIF87a").SmallImage(), &image, "GIF87a"},
        {"second extension", Start(kFourColours, "GIF87a").Comment("x"), &comment, "GIF87a"},
        {"other version", Start(kFourColours, "GIFxyz"), &comment, "GIFxyz"},
    };
    for (const auto& [what, bytes, block, signature] : cases) {
        LoadedGif list(bytes, Manner::kWhole);
        int selection = 0;
        ASSERT_TRUE(InsertBlocks(&list, &selection, {block, 1}));
        const Bytes written = Written(list);
        EXPECT_EQ(std::string(written.begin(), written.begin() + 6), signature) << what;
    }
}

TEST(Whole, NamesAndScreenOnlyWhenAskedFor) {
    BlockList made;
    ASSERT_TRUE(NewDocument(&made));
    const Identity names = {"A", "B"};
    EXPECT_EQ(KindsOf(LoadedGif(Written(made), Manner::kWhole)), "1");
    EXPECT_EQ(KindsOf(LoadedGif(Written(made, &names), Manner::kWhole)), "16");
    const Bytes bytes = GifBytes().Header("GIF89a", 2, 2, kFourColours).SmallImage().Add({0x3B});
    LoadedGif list(bytes, Manner::kWhole);
    EXPECT_TRUE(FitLogicalScreen(&list));
    EXPECT_TRUE(HasSource(list.blocks[0])) << "it fits already";
    EXPECT_EQ(KindsOf(LoadedGif(Written(list, &names), Manner::kWhole)), "126");
}

TEST(Whole, ShortMemoryCostsPicturesOrTheLoadAndNeverBytes) {
    const Bytes bytes = Everything();
    int failures = 0;
    for (long n = 0; n < 200; ++n) {
        faults.onlyOne = true;
        faults.allocationsUntilFailure = n;
        LoadedGif list(bytes, Manner::kWhole);
        faults = {};
        if (list.result == kReadDone) {
            EXPECT_EQ(Written(list), bytes) << n;
        }
        failures += list.result == kReadFailed;
    }
    EXPECT_GT(failures, 5);
}
