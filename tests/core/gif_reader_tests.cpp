#include "gif/gif_reader.h"

#include <gtest/gtest.h>

#include <cstring>

#include "gif/descriptor.h"
#include "tests/support/fault_loop.h"
#include "tests/support/gif_bytes.h"
#include "tests/support/test_blocks.h"

namespace {

constexpr int kFourColours = 0x81;

struct Loaded : OwnedList {
    explicit Loaded(const Bytes& bytes) {
        EXPECT_TRUE(CreateBlockList(this));
        File file;
        file.OpenMemory(bytes.data(), bytes.size());
        result = ReadGif(this, file, &report);
    }
    ReadResult result;
    ReadReport report;
};

GifBytes Start() {
    return GifBytes().Header("GIF89a", 5, 4, kFourColours);
}

std::string Repeated(size_t times, char c) {
    return std::string(times, c);
}

// A name table entry: its head's length field says what it likes.
GifBytes NameEntry(int length, int kind, int position, std::string_view name) {
    return GifBytes().Word(length).Word(kind).Word(position).Repeat(0xEE, 8).Text(name);
}

std::string NameOf(const BlockList& list, uint32_t index) {
    char name[kNameBytes];
    GetBlockName(name, BlockAt(list, index));
    return name;
}

// A document of one image, a comment, and a BLOCK NAMES block with that table.
GifBytes WithNames(const Bytes& table) {
    std::string_view text(reinterpret_cast<const char*>(table.data()), table.size());
    return Start().SmallImage().Comment("c").Extension(0xFF, "\x0BKELMORnb1.0", text).Add({0x3B});
}

}  // namespace

TEST(GifReader, HowLoadsEnd) {
    using G = GifBytes;
    struct Case {
        const char* what;
        Bytes file;
        ReadResult result;
        const char* kinds;
        bool reachedTrailer;
    } const cases[] = {
        {"empty file", {}, kReadNotGif, "", false},
        {"signature cut", G().Text("GIF89a").Repeat(0, 6), kReadNotGif, "", false},
        {"other signature", G().Text("PNG89a").Repeat(0, 60), kReadNotGif, "", false},
        {"header only", G().Header("GIF89a", 1, 1, 0), kReadDone, "1", false},
        {"any version", G().Header("GIFxyz", 1, 1, 0).Add({0x3B}), kReadDone, "1", true},
        {"prefix", G().Repeat(0, 128).Add(Start()).SmallImage().Add({0x3B}), kReadDone, "12", true},
        {"prefix too short", G().Repeat(0, 127).Add(Start()).Add({0x3B}), kReadNotGif, "", false},
        {"palette cut", G().Header("GIF89a", 1, 1, 0).Repeat(0, 5), kReadDone, "1", false},
        {"global palette cut", G().Text("GIF89a").Repeat(0, 4).Add({0x80, 0, 0, 1, 2, 3, 4, 5}), kReadFailed, "",
         false},
        {"no palette at all", G().Header("GIF89a", 1, 1, 0).SmallImage(), kReadFailed, "1", false},
        {"local palette only", G().Header("GIF87a", 1, 1, 0).SmallImage(kFourColours).Add({0x3B}), kReadDone, "12",
         true},
        {"unknown label", Start().Comment("x").Extension(0x33, "", "y").SmallImage(), kReadFailed, "16", false},
        {"corrupt image", Start().SmallImage().ImageHead(1, 1, 0).Add({2, 1, 7, 0, 0x3B}), kReadFailed, "12", false},
        {"bad code size is a blank image", Start().ImageHead(1, 1, 0).Add({9, 1, 7, 0, 0x3B}), kReadDone, "12", true},
        {"no image data", Start().ImageHead(1, 1, 0).Add({2}), kReadDone, "12", false},
        {"no code size", Start().ImageHead(1, 1, 0), kReadFailed, "1", false},
        {"image without pixels", Start().ImageHead(0, 7, 0).Add({2, 1, 0x2C, 0, 0x3B}), kReadDone, "12", true},
        {"image of four thousand million pixels", Start().ImageHead(65535, 65535, 0x87).Add({2, 0}), kReadFailed, "1",
         false},
        {"bytes after the trailer", Start().Add({0x3B}).SmallImage().Comment("x"), kReadDone, "1", true},
        {"a byte that starts no block", Start().Add({0}).Comment("x").Add({0x3B}), kReadDone, "1", false},
        {"foreign application block ends it",
         Start().Comment("x").Extension(0xFF, "\x0BXMP DataXMP", "data").SmallImage(), kReadDone, "165", false},
        {"foreign application block of size 13", Start().Extension(0xFF, "\x0DXMP DataXMP", "data").SmallImage(),
         kReadDone, "152", false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        Loaded loaded(c.file);
        EXPECT_EQ(loaded.result, c.result);
        EXPECT_EQ(KindsOf(loaded), c.kinds);
        EXPECT_EQ(loaded.report.reachedTrailer, c.reachedTrailer);
        EXPECT_FALSE(loaded.report.couldNotOpen);
    }
}

TEST(GifReader, DescriptorsAndPalettes) {
    Loaded loaded(GifBytes()
                      .Header("GIF87a", 320, 200, kFourColours | 0x70)
                      .SmallImage(0x40)
                      .SmallImage(0x87)
                      .Add({0x21, 0xF9, 9, 0x1F, 0x34, 0x12, 200, 77})
                      .Extension(0x01,
                                 "\x0C"
                                 "abcdefghijkl",
                                 "t\x01\n\r\xFF")
                      .Add({0x21, 0xFF, 11})
                      .Text("NETSCAPE2.0")
                      .Add({3, 1, 0x0A, 0x01, 0, 0x3B}));
    ASSERT_EQ(loaded.result, kReadDone);
    EXPECT_EQ(KindsOf(loaded), "122347");
    for (uint32_t i = 0; i < loaded.count; ++i) {
        EXPECT_EQ(BlockAt(loaded, i).position, i);
        EXPECT_EQ(BlockAt(loaded, i).owner, &loaded);
    }
    Block header = BlockAt(loaded, 0);
    EXPECT_EQ(memcmp(header.descriptor, "GIF87a\x40\x01\xC8\x00\xF1\x00\x00", 13), 0);
    EXPECT_EQ(header.palette[3], (RgbTriple{3, 6, 9}));
    EXPECT_EQ(header.palette[4], RgbTriple{});

    // An image shows the depth of the palette that it uses, but keeps only a palette of its own.
    RgbTriples none = {};
    Block shared = BlockAt(loaded, 1), own = BlockAt(loaded, 2);
    EXPECT_EQ(GetImageFields(shared).packed, 0x41);
    EXPECT_EQ(memcmp(shared.palette, none, kPaletteBytes), 0);
    EXPECT_EQ(PixelsOf(shared), "12 00") << "the second row in the data is row 4 of an interlaced image";
    EXPECT_EQ(GetImageFields(own).packed, 0x87);
    EXPECT_EQ(own.palette[255], (RgbTriple{255, 254, 253}));
    EXPECT_EQ(PixelsOf(own), "12 30");
    RgbTriples colours = {};
    int bitCount = 0;
    EXPECT_TRUE(GetImageInfo(shared.data, nullptr, nullptr, &bitCount, colours));
    EXPECT_EQ(bitCount, 4);
    EXPECT_EQ(colours[2], (RgbTriple{2, 4, 6}));

    Block control = BlockAt(loaded, 3);
    EXPECT_EQ(memcmp(control.descriptor, "\x09\x1F\x34\x12\xC8\x4D", 6), 0) << "nothing in it is checked";
    Block text = BlockAt(loaded, 4);
    EXPECT_EQ(memcmp(text.descriptor,
                     "\x0C"
                     "abcdefghijkl",
                     13),
              0);
    EXPECT_EQ(TextOf(text), "t\x01\n\r\xFF");
    Block loop = BlockAt(loaded, 5);
    EXPECT_EQ(memcmp(loop.descriptor, "\x0BNETSCAPE2.0\x03\x01\x0A\x01\x00", 17), 0);
    EXPECT_EQ(GetLoopIterations(loop), 266);
}

TEST(GifReader, CommentsAreNormalised) {
    struct Case {
        std::string text, stored;
    } const cases[] = {
        {"plain", "plain"},
        {"A\r\nB\tC", "A\r\nBC"},
        {"\r\r", "\r\n\r\n"},
        {std::string("\0\x1F \x7F\xFF", 5), " \x7F\xFF"},
        {Repeated(255, 'a') + "b", Repeated(255, 'a') + "b"},
        {Repeated(32766, 'a') + "bc", Repeated(32766, 'a') + "b"},
        {Repeated(32766, 'a') + "\rc", Repeated(32766, 'a') + "\r"},
    };
    for (const Case& c : cases) {
        Loaded loaded(Start().Comment(c.text).Comment("next").Add({0x3B}));
        EXPECT_EQ(TextOf(BlockAt(loaded, 1)), c.stored);
        EXPECT_EQ(TextOf(BlockAt(loaded, 2)), "next");
        EXPECT_TRUE(loaded.report.reachedTrailer);
        MemoryLock lock(BlockAt(loaded, 1).data);
        EXPECT_EQ(lock.Bytes()[c.stored.size()], 0);
    }
}

TEST(GifReader, EmptyCommentTakesASecondTerminator) {
    for (const char* text : {"", "\n\t"}) {
        for (const Bytes& more : {Bytes{}, Bytes{0}})
            EXPECT_EQ(KindsOf(Loaded(Start().Comment(text).Add(more).Comment("x"))), "166");
        EXPECT_EQ(KindsOf(Loaded(Start().Comment(text).Add({0, 0}).Comment("x"))), "16");
        EXPECT_EQ(Loaded(Start().Comment(text)).result, kReadDone) << "at the end of the file";
    }
    EXPECT_EQ(KindsOf(Loaded(Start().Comment("y").Add({0}).Comment("x"))), "16");
}

TEST(GifReader, LongTextsAreCut) {
    std::string text = Repeated(40000, 'x');
    Loaded loaded(Start().Extension(0x01, Repeated(13, 'f'), text).Comment("next"));
    EXPECT_EQ(BlockAt(loaded, 1).dataLength, kMaxTextBytes);
    EXPECT_EQ(TextOf(BlockAt(loaded, 2)), "next");
}

TEST(GifReader, BlockNames) {
    struct Case {
        const char* what;
        Bytes table;
        std::string image, comment;
    } const cases[] = {
        {"two names",
         GifBytes()
             .Word(2)
             .Add(NameEntry(2, 6, 2, std::string("c", 2)))
             .Add(NameEntry(5, 2, 1, std::string("logo", 5))),
         "logo", "c"},
        {"first entry for a block counts",
         GifBytes().Word(2).Add(NameEntry(2, 2, 1, "a")).Add(Bytes{0}).Add(NameEntry(2, 2, 1, "b")), "a", ""},
        {"no name for another kind", GifBytes().Word(1).Add(NameEntry(2, 3, 1, "a")), "", ""},
        {"no name behind the end", GifBytes().Word(1).Add(NameEntry(2, 2, 900, "a")), "", ""},
        {"count larger than the table", GifBytes().Word(65535).Add(NameEntry(1, 2, 1, "a")), "a", ""},
        {"count smaller than the table", GifBytes().Word(0).Add(NameEntry(1, 2, 1, "a")), "", ""},
        {"name longer than the table", GifBytes().Word(2).Add(NameEntry(1, 2, 1, "a")).Add(NameEntry(65535, 6, 2, "b")),
         "a", ""},
        {"name without its NUL", GifBytes().Word(2).Add(NameEntry(2, 2, 1, "ab")).Add(NameEntry(1, 6, 2, "c")), "ab",
         "c"},
        {"name of no bytes", GifBytes().Word(1).Add(NameEntry(0, 2, 1, "")), "", ""},
        {"head cut", GifBytes().Word(1).Word(0).Word(2), "", ""},
        {"count cut", {1}, "", ""},
        {"nothing", {}, "", ""},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        Loaded loaded(WithNames(c.table));
        EXPECT_EQ(KindsOf(loaded), "1268");
        EXPECT_EQ(NameOf(loaded, 1), c.image);
        EXPECT_EQ(NameOf(loaded, 2), c.comment);
    }
}

TEST(GifReader, OnlyTheFirstNamesBlockCounts) {
    Bytes first = WithNames(GifBytes().Word(1).Add(NameEntry(1, 2, 1, "a")));
    first.pop_back();
    GifBytes second = GifBytes().Word(1).Add(NameEntry(1, 6, 2, "b"));
    GifBytes file = GifBytes().Add(first).Extension(0xFF, "\x0BKELMORnb1.0",
                                                    {reinterpret_cast<const char*>(second.data()), second.size()});
    Loaded loaded(file);
    EXPECT_EQ(KindsOf(loaded), "12688");
    EXPECT_EQ(NameOf(loaded, 1), "a");
    EXPECT_EQ(NameOf(loaded, 2), "");
}

// Wherever a file is cut, the blocks before the cut are there, and nothing else happens.
TEST(GifReader, FilesCutAnywhere) {
    GifBytes whole = WithNames(GifBytes().Word(1).Add(NameEntry(2, 2, 1, "a")));
    std::string kinds = KindsOf(Loaded(whole));
    size_t headerBytes = Start().size();
    for (size_t bytes = 0; bytes < whole.size(); ++bytes) {
        SCOPED_TRACE(bytes);
        Loaded cut(Bytes(whole.begin(), whole.begin() + static_cast<ptrdiff_t>(bytes)));
        EXPECT_EQ(cut.result == kReadNotGif, bytes < 13);
        EXPECT_EQ(KindsOf(cut), kinds.substr(0, cut.count));
        EXPECT_EQ(cut.count > 0, bytes >= headerBytes);
        EXPECT_FALSE(cut.report.reachedTrailer);
        if (bytes == headerBytes || bytes + 1 == whole.size()) {
            EXPECT_EQ(cut.result, kReadDone);
        } else if (bytes == headerBytes + 1 + 8) {
            EXPECT_EQ(cut.result, kReadFailed) << "inside a descriptor";
        }
    }
}

TEST(GifReader, FileThatIsNotThere) {
    TempFolder folder;
    for (const std::string& path : {folder.Path("none.gif"), folder.Path("")}) {
        OwnedList list;
        ASSERT_TRUE(CreateBlockList(&list));
        ReadReport report = {};
        EXPECT_EQ(ReadGifFile(&list, path.c_str(), &report), kReadFailed);
        EXPECT_TRUE(report.couldNotOpen);
    }
    WriteAll(folder.Path("\xC3\xA9.gif"), Start());
    OwnedList list;
    ASSERT_TRUE(CreateBlockList(&list));
    EXPECT_EQ(ReadGifFile(&list, folder.Path("\xC3\xA9.gif").c_str()), kReadDone);
}

// The load fails, or goes on without what is no more than convenient: pixels, names, positions.
TEST(GifReader, ExhaustedMemory) {
    GifBytes names = GifBytes().Word(1).Add(NameEntry(2, 2, 1, std::string("a", 2)));
    GifBytes file = WithNames(names);
    file.pop_back();
    file.Extension(0x01, Repeated(13, 'f'), "text").SmallImage();
    for (int i = 0; i < 70; ++i) file.Add({0x21, 0xF9, 4, 0, 0, 0, 0, 0});
    TempFolder folder;
    std::string path = folder.Path("a.gif");
    WriteAll(path, file);
    auto attempt = [&](FaultRound& round) {
        OwnedList list;
        bool made = CreateBlockList(&list);
        ReadResult result = made ? ReadGifFile(&list, path.c_str()) : kReadFailed;
        round.End();
        EXPECT_TRUE(!round.IsUndisturbed() || NameOf(list, 1) == "a");
        if (round.IsUndisturbed() || result == kReadDone) {
            EXPECT_EQ(KindsOf(list), "126842" + Repeated(70, '3'));
        } else {
            EXPECT_EQ(result, kReadFailed);
        }
    };
    EXPECT_GT(ForEachFault(&Faults::allocationsUntilFailure, attempt), 10);
    EXPECT_GT(ForEachFault(&Faults::locksUntilFailure, attempt), 80);
}
