#include "gif/gif_reader.h"

#include "gif/first_image.h"
#include "platform/faults.h"
#include "tests/support/test_blocks.h"

using namespace std::string_literals;

namespace {

std::string Repeated(size_t times, char c) {
    return std::string(times, c);
}

// A name table entry: its head's length field says what it likes.
GifBytes NameEntry(int length, int kind, int position, std::string_view name) {
    return GifBytes().Word(length).Word(kind).Word(position).Repeat(0xEE, 8).Text(name);
}

GifBytes NamesBlock(const Bytes& table) {
    return GifBytes().Extension(0xFF, "\x0BKELMORnb1.0", {reinterpret_cast<const char*>(table.data()), table.size()});
}

// A document of one image, a comment, and a BLOCK NAMES block with that table.
GifBytes WithNames(const Bytes& table) {
    return Start().SmallImage().Comment("c").Add(NamesBlock(table));
}

}  // namespace

TEST(GifReader, HowLoadsEnd) {
    using G = GifBytes;
    const std::tuple<const char*, Bytes, ReadResult, const char*, bool> cases[] = {
        {"signature cut", G().Text("GIF89a").Repeat(0, 6), kReadNotGif, "", false},
        {"other signature", G().Text("PNG89a").Repeat(0, 200), kReadNotGif, "", false},
        {"any version", G().Header("GIFxyz", 1, 1, 0).Add({0x3B}), kReadDone, "1", true},
        // kQuirkPrefixBytes
        {"prefix", G().Repeat(0, 128).Add(Start()).SmallImage().Add({0x3B}), kReadDone, "12", true},
        {"prefix too short", G().Repeat(0, 127).Add(Start()).Add({0x3B}), kReadNotGif, "", false},
        {"global palette cut", G().Text("GIF89a").Repeat(0, 4).Add({0x80, 0, 0, 1, 2}), kReadFailed, "", false},
        {"no palette at all", Start(0).SmallImage(), kReadFailed, "1", false},
        {"local palette only", Start(0).SmallImage(kFourColours).Add({0x3B}), kReadDone, "12", true},
        {"unknown label", Start().Comment("x").Extension(0x33, "", "y").SmallImage(), kReadFailed, "16", false},
        {"corrupt image", Start().SmallImage().ImageHead(1, 1, 0).Add({2, 1, 7, 0, 0x3B}), kReadFailed, "12", false},
        // kQuirkUndecodedImageStaysBlank
        {"bad code size is a blank image", Start().ImageHead(1, 1, 0).Add({9, 1, 7, 0, 0x3B}), kReadDone, "12", true},
        {"no image data", Start().ImageHead(1, 1, 0).Add({2}), kReadDone, "12", false},
        {"image without pixels", Start().ImageHead(0, 7, 0).Add({2, 1, 0x2C, 0, 0x3B}), kReadDone, "12", true},
        {"four thousand million pixels", Start().ImageHead(65535, 65535, 0x87).Add({2, 0}), kReadFailed, "1", false},
        {"bytes after the trailer", Start().Add({0x3B}).SmallImage(), kReadDone, "1", true},
        // kQuirkForeignApplicationEndsLoad
        {"foreign application block", Start().Comment("x").Extension(0xFF, "\x0BXMP DataXMP", "data").SmallImage(),
         kReadDone, "165", false},
        {"the same, whose data looks like the trailer",
         Start().Extension(0xFF, "\x0BXMP DataXMP", Repeated(0x3B, 'd')).SmallImage(), kReadDone, "15", false},
        {"the same, whose data looks like a block",
         Start().Extension(0xFF, "\x0BXMP DataXMP", "\xFE\1x" + Repeated(30, '\0')).Add({0x3B}), kReadDone, "156",
         false},
        {"the same of size 12", Start().Extension(0xFF, "\x0CXMP DataXMP", "data").SmallImage(), kReadDone, "15",
         false},
        {"the same of size 13", Start().Extension(0xFF, "\x0DXMP DataXMP", "data").SmallImage(), kReadDone, "152",
         false},
    };
    for (const auto& [what, file, result, kinds, reachedTrailer] : cases) {
        SCOPED_TRACE(what);
        LoadedGif loaded(file);
        EXPECT_EQ(loaded.result, result);
        EXPECT_EQ(KindsOf(loaded), kinds);
        EXPECT_EQ(loaded.report.reachedTrailer, reachedTrailer);
        EXPECT_FALSE(loaded.report.couldNotOpen);
    }
}

TEST(GifReader, WhatBlocksHold) {
    LoadedGif loaded(GifBytes()
                         .Header("GIF87a", 320, 200, kFourColours | 0x70)
                         .SmallImage(0x40)
                         .SmallImage(0x87)
                         .Add({0x21, 0xF9, 9, 0x1F, 0x34, 0x12, 200, 77})  // nothing in it is checked
                         .Extension(0x01, "xabcdefghijkl", "t\x01\n\r\xFF")
                         .Extension(0xFF, "\x0BNETSCAPE2.0", "\x01\x0A\x01"));
    const struct {
        std::string descriptor;
        const char* content;
        RgbTriple colour;  // number 2: an image keeps only a palette of its own
    } expected[] = {{"GIF87a\x40\x01\xC8\0\xF1"s, "(none)", {2, 4, 6}},
                    {"\0\0\0\0\x02\0\x02\0\x41"s, "12 00", {}},  // kQuirkSizeCodeOfGlobalPalette
                    {"\0\0\0\0\x02\0\x02\0\x87"s, "12 30", {2, 4, 6}},
                    {"\x09\x1F\x34\x12\xC8\x4D", "(none)", {}},
                    {"xabcdefghijkl", "t\x01\n\r\xFF", {}},
                    {"\x0BNETSCAPE2.0\x03\x01\x0A\x01", "(none)", {}}};
    EXPECT_EQ(KindsOf(loaded), "122347");
    for (uint32_t i = 0; i < loaded.count; ++i) {
        Block block = BlockAt(loaded, i);
        EXPECT_EQ(block.position, i);
        EXPECT_EQ(block.owner, &loaded);
        EXPECT_EQ(DescriptorOf(block), expected[i].descriptor);
        EXPECT_EQ(block.kind == kImageBlock ? PixelsOf(block) : TextOf(block), expected[i].content);
        EXPECT_EQ(block.palette[2], expected[i].colour);
    }
    RgbTriples shown = {};
    GetImagePalette(ImageLock(BlockAt(loaded, 1).data), shown);
    EXPECT_EQ(shown[2], (RgbTriple{2, 4, 6}));
}

TEST(GifReader, TextsAreNormalisedAndCut) {
    struct Case {
        std::string text, stored;
        int label = 0xFE;
    } const cases[] = {
        // kQuirkCommentsNormalised
        {"A\r\nB\tC\r\r", "A\r\nBC\r\n\r\n"},
        {"\0\x1F \x7F\xFF"s, " \x7F\xFF"},
        {Repeated(255, 'a') + "b", Repeated(255, 'a') + "b"},
        {Repeated(32766, 'a') + "bc", Repeated(32766, 'a') + "b"},
        {Repeated(32766, 'a') + "\rc", Repeated(32766, 'a') + "\r"},
        {Repeated(40000, '\t'), Repeated(32767, '\t'), 0x01},
    };
    for (const Case& c : cases) {
        std::string fixedPart = c.label == 0x01 ? Repeated(13, 'f') : "";
        LoadedGif loaded(Start().Extension(c.label, fixedPart, c.text).Comment("next").Add({0x3B}));
        EXPECT_EQ(TextOf(BlockAt(loaded, 1)), c.stored);
        EXPECT_EQ(TextOf(BlockAt(loaded, 2)), "next");
        EXPECT_TRUE(loaded.report.reachedTrailer);
        MemoryLock lock(BlockAt(loaded, 1).data);
        EXPECT_EQ(lock.Bytes()[c.stored.size()], 0);
    }
}

TEST(GifReader, TextCutByTheEndOfTheFileKeepsWhatCame) {
    EXPECT_EQ(TextOf(BlockAt(LoadedGif(Start().Add({0x21, 0xFE, 2, 'a', 'b', 5, 'c', 'd'})), 1)), "abcd");
}

// kQuirkEmptyCommentTakesSecondZero
TEST(GifReader, EmptyCommentTakesASecondTerminator) {
    for (const char* text : {"", "\n\t"}) {
        for (const Bytes& more : {Bytes{}, Bytes{0}})
            EXPECT_EQ(KindsOf(LoadedGif(Start().Comment(text).Add(more).Comment("x"))), "166");
        EXPECT_EQ(KindsOf(LoadedGif(Start().Comment(text).Add({0, 0}).Comment("x"))), "16");
    }
    EXPECT_EQ(KindsOf(LoadedGif(Start().Comment("y").Add({0}).Comment("x"))), "16");
}

TEST(GifReader, BlockNames) {
    const std::tuple<const char*, int, GifBytes, std::string, std::string> cases[] = {
        {"two names", 2, NameEntry(2, 6, 2, "c\0"s).Add(NameEntry(5, 2, 1, "logo\0"s)), "logo", "c"},
        {"first entry for a block counts", 2, NameEntry(2, 2, 1, "a\0"s).Add(NameEntry(2, 2, 1, "b\0"s)), "a", ""},
        {"no name for another kind", 1, NameEntry(2, 3, 1, "a\0"s), "", ""},
        {"count larger than the table", 65535, NameEntry(1, 2, 1, "a"), "a", ""},
        {"name longer than the table", 2, NameEntry(1, 2, 1, "a").Add(NameEntry(5, 6, 2, "b")), "a", ""},
        {"name without its NUL", 2, NameEntry(2, 2, 1, "ab").Add(NameEntry(1, 6, 2, "c")), "ab", "c"},
        {"head cut", 1, GifBytes().Word(0).Word(2), "", ""},
    };
    GifBytes second = NamesBlock(GifBytes().Word(1).Add(NameEntry(1, 2, 1, "z")));  // never counts
    for (const auto& [what, count, entries, image, comment] : cases) {
        SCOPED_TRACE(what);
        LoadedGif loaded(WithNames(GifBytes().Word(count).Add(entries)).Add(second));
        EXPECT_EQ(KindsOf(loaded), "12688");
        EXPECT_EQ(NameOf(BlockAt(loaded, 1)), image);
        EXPECT_EQ(NameOf(BlockAt(loaded, 2)), comment);
    }
    EXPECT_EQ(LoadedGif(WithNames({1})).result, kReadDone) << "half a count";
}

// A file that comes in many pieces, and in which the reader has to go back: an image with more pixels than it has room
// for, one that nobody can decode, and a long text.
TEST(GifReader, AReadErrorIsNotTheEnd) {
    TempFolder folder;
    const std::string large = folder.Path("large.gif"), noGif = folder.Path("text");
    std::string clearsAndPixels;
    for (int i = 0; i < 40000; ++i) clearsAndPixels += "\x04\x41\x10";
    GifBytes file = Start().ImageHead(2, 2, 0).Add({2}).SubBlocks(clearsAndPixels);
    file.ImageHead(2, 2, 0).Add({9}).SubBlocks(Repeated(150000, 'x')).Comment(Repeated(70000, 'c'));
    WriteAll(large, file.Add({0x3B}));
    WriteAll(noGif, Repeated(200, 'x'));
    const std::tuple<std::string, long Faults::*, ReadResult, long> cases[] = {
        {large, &Faults::readsUntilFailure, kReadDone, 6},
        {large, &Faults::seeksUntilFailure, kReadDone, 1},
        {noGif, &Faults::readsUntilFailure, kReadNotGif, 1},
    };
    for (const auto& [path, counter, wholeResult, leastRequests] : cases) {
        long n = 0;
        for (bool failed = true; failed; ++n) {
            SCOPED_TRACE(path + ", request " + std::to_string(n));
            BlockList list;
            ASSERT_TRUE(CreateBlockList(&list));
            faults.onlyOne = true;
            faults.*counter = n;
            ReadReport report;
            ReadResult result = ReadGifFile(&list, path.c_str(), &report);
            failed = faults.*counter == Faults::kPast;
            faults = {};
            EXPECT_EQ(result, failed ? kReadFailed : wholeResult);
            EXPECT_EQ(report.couldNotRead, failed);
            EXPECT_EQ(report.reason.empty(), !failed);
            EXPECT_FALSE(report.couldNotOpen);
        }
        EXPECT_GT(n, leastRequests) << "too few requests to tell anything";
    }
}

TEST(GifReader, AnImageWithoutMemoryIsBlankAndReported) {
    const Bytes bytes = Start().SmallImage().Add({0x3B});
    int blank = 0;
    for (long n = 0; n < 8; ++n) {
        File file;
        file.OpenMemory(bytes.data(), bytes.size());
        BlockList list;
        ASSERT_TRUE(CreateBlockList(&list));
        faults.allocationsUntilFailure = n;
        ReadReport report;
        ReadResult result = ReadGif(&list, file, &report);
        faults = {};
        std::string pixels = PixelsOf(BlockAt(list, 1));
        EXPECT_EQ(pixels, result == kReadFailed ? "(none)" : report.imageLeftBlank ? "00 00" : "12 30") << n;
        blank += report.imageLeftBlank;

        faults.allocationsUntilFailure = n;
        file.OpenMemory(bytes.data(), bytes.size());
        Block image;
        image.data = ReadFirstImage(file)->bitmap;
        faults = {};
        EXPECT_EQ(PixelsOf(image), n < 3 ? "(none)" : "12 30") << "an import is whole or none";
    }
    EXPECT_EQ(blank, 1);
}
