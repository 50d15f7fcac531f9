#include "gif/gif_writer.h"

#include <gtest/gtest.h>

#include "gif/block_writers.h"
#include "gif/default_blocks.h"
#include "gif/descriptor.h"
#include "gif/gif_reader.h"
#include "platform/identity.h"
#include "tests/support/fault_loop.h"
#include "tests/support/gif_bytes.h"
#include "tests/support/test_blocks.h"

namespace {

constexpr char kIdentityText[] = "FILE IDENTITY\r\nCreated or modified by\r\nAnn\r\nKelmor";

class GifWriter : public testing::Test {
protected:
    GifWriter() { SetUserIdentity("Ann", "Kelmor"); }
    ~GifWriter() override {
        SetUserIdentity(nullptr, nullptr);
        faults = {};
    }

    // What `write` puts into a file.
    template <typename Write>
    Bytes Written(Write write) {
        File file;
        EXPECT_TRUE(file.Create(path_.c_str()));
        EXPECT_TRUE(write(file));
        EXPECT_TRUE(file.Close());
        return ReadAll(path_);
    }

    Bytes Saved(const BlockList& list) {
        EXPECT_TRUE(WriteGifFile(list, path_.c_str()));
        return ReadAll(path_);
    }

    void Load(OwnedList* list, const Bytes& bytes) {
        ASSERT_TRUE(CreateBlockList(list));
        File file;
        file.OpenMemory(bytes.data(), bytes.size());
        ASSERT_EQ(ReadGif(list, file), kReadDone);
    }

    TempFolder folder_;
    std::string path_ = folder_.Path("out.gif");
};

// One of everything that is saved, in a form that saving does not change.
GifBytes EveryKind(const char* signature) {
    return GifBytes()
        .Header(signature, 5, 4, 0xF1)
        .Add({0x21, 0xFF, 11})
        .Text("NETSCAPE2.0")
        .Add({3, 1, 7, 0, 0, 0x21, 0xF9, 4, 9, 5, 0, 3, 0})
        .SmallImage(1)
        .SmallImage(0x81 | 0x20)
        .Comment("a\r\nb")
        .Extension(0x01,
                   "\x0C"
                   "abcdefghijkl",
                   std::string(254, 't'))
        .Extension(0xFF, "\x0DXMP DataXMP", std::string("d\0e", 3));
}

GifBytes WithEnd(GifBytes bytes) {
    return bytes.Comment(kIdentityText).Add({0x3B});
}

std::string Sized(size_t bytes) {
    return std::string(bytes, 'x');
}

}  // namespace

TEST_F(GifWriter, BlocksByKind) {
    struct Case {
        const char* what;
        bool (*write)(File& file, const Block& block);
        uint16_t kind;
        const char* descriptor;
        std::string text;
        Bytes expected;
    } const cases[] = {
        {"control",
         WriteControlBlock,
         kControlBlock,
         "\x04\x01\x02\x03\x04\x05\x66",
         "",
         {0x21, 0xF9, 4, 1, 2, 3, 4, 5}},
        {"loop", WriteLoopBlock, kLoopBlock, "\x0BNETSCAPE2.0\x03\x01\x02\x03\x09", "",
         GifBytes().Add({0x21, 0xFF, 11}).Text("NETSCAPE2.0").Add({3, 1, 2, 3, 9})},
        {"plain text", WritePlainTextBlock, kPlainTextBlock,
         "\x0C"
         "abcdefghijkl",
         "hi",
         GifBytes().Extension(1,
                              "\x0C"
                              "abcdefghijkl",
                              "hi")},
        {"application", WriteApplicationBlock, kApplicationBlock, "\x0Bzyxwvuts123", "hi",
         GifBytes().Extension(0xFF, "\x0Bzyxwvuts123", "hi")},
        {"comment", WriteCommentBlock, kCommentBlock, "\x02", "hi", GifBytes().Comment("hi")},
        {"unknown", WriteUnknownBlock, kUnknownBlock, "\x42", "hi", GifBytes().Extension(0x42, "", "hi")},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        OwnedBlock block(c.text.empty() ? Block{} : MakeText(c.kind, c.text));
        for (int i = 0; i < kDescriptorBytes && c.descriptor[i]; ++i)
            block.descriptor[i] = static_cast<uint8_t>(c.descriptor[i]);
        EXPECT_EQ(Written([&](File& file) { return c.write(file, block); }), c.expected);
        if (c.text.empty()) continue;
        OwnedBlock without;
        EXPECT_EQ(Written([&](File& file) { return c.write(file, without); }), Bytes()) << "without text";
    }
}

TEST_F(GifWriter, TextLengths) {
    struct Case {
        size_t text;
        GifBytes expected;
    } const cases[] = {
        {0, GifBytes().Add({0, 0})},
        {1, GifBytes().SubBlocks(Sized(1))},
        {254, GifBytes().SubBlocks(Sized(254))},
        {255, GifBytes().SubBlocks(Sized(255)).Add({0})},
        {256, GifBytes().SubBlocks(Sized(256))},
        {510, GifBytes().SubBlocks(Sized(510)).Add({0})},
        {32767, GifBytes().SubBlocks(Sized(32767))},
    };
    for (const Case& c : cases) {
        OwnedBlock block(MakeText(kCommentBlock, Sized(c.text)));
        EXPECT_EQ(Written([&](File& file) { return WriteCommentBlock(file, block); }),
                  GifBytes().Add({0x21, 0xFE}).Add(c.expected))
            << c.text;
    }
}

TEST_F(GifWriter, DocumentIsSavedAsItWasLoaded) {
    OwnedList list;
    Load(&list, EveryKind("GIF87a").Add({0x3B}));
    EXPECT_EQ(KindsOf(list), "17322645");
    EXPECT_EQ(Saved(list), WithEnd(EveryKind("GIF89a")));
    EXPECT_EQ(BlockAt(list, 0).descriptor[4], '7') << "the document in memory keeps its version";
    EXPECT_EQ(KindsOf(list), "17322645") << "the identity is in the file only";
}

TEST_F(GifWriter, HeaderOnly) {
    for (int packed : {0x71, 0xF0}) {
        OwnedList list;
        GifBytes header = GifBytes().Header("GIF89a", 640, 480, packed);
        Load(&list, header);
        EXPECT_EQ(Saved(list), WithEnd(header));
    }
}

TEST_F(GifWriter, IdentityCommentStandsOnce) {
    OwnedList list, again;
    Load(&list, EveryKind("GIF89a"));
    Bytes once = Saved(list);
    Load(&again, once);
    EXPECT_EQ(Saved(again), once);
    SetUserIdentity("Ann", "Other");
    EXPECT_GT(Saved(again).size(), once.size());

    struct Case {
        uint16_t kind;
        std::string text;
        bool isIdentical;
    } const cases[] = {
        {kCommentBlock, "some text", true},   {kCommentBlock, "some texT", false},   {kCommentBlock, "some tex", false},
        {kCommentBlock, "some text ", false}, {kPlainTextBlock, "some text", false},
    };
    for (const Case& c : cases) {
        OwnedList one;
        Append(&one, MakeText(c.kind, c.text));
        EXPECT_EQ(HasIdenticalComment(one, "some text"), c.isIdentical) << c.kind << c.text;
    }
}

TEST_F(GifWriter, LongestIdentity) {
    std::string longest(kIdentityBytes - 1, 'o');
    SetUserIdentity((longest + "cut").c_str(), longest.c_str());
    OwnedList list;
    Load(&list, GifBytes().Header("GIF89a", 1, 1, 0));
    std::string text = "FILE IDENTITY\r\nCreated or modified by\r\n" + longest + "\r\n" + longest;
    EXPECT_EQ(Saved(list), GifBytes().Header("GIF89a", 1, 1, 0).Comment(text).Add({0x3B}));
}

TEST_F(GifWriter, BlockNamesAreNotSaved) {
    OwnedList list;
    GifBytes file = GifBytes().Header("GIF89a", 1, 1, 0);
    Load(&list, GifBytes(file).Extension(0xFF, "\x0BKELMORnb1.0", std::string(2, '\0')));
    Append(&list, Block{});  // nor blocks of no kind
    ASSERT_EQ(KindsOf(list), "180");
    EXPECT_EQ(Saved(list), WithEnd(file));
}

TEST_F(GifWriter, DocumentWithoutHeaderLeavesTheTargetAlone) {
    Bytes precious = {1, 2, 3};
    WriteAll(path_, precious);
    OwnedList empty, headless;
    Append(&headless, MakeText(kCommentBlock, "x"));
    EXPECT_FALSE(WriteGifFile(empty, path_.c_str()));
    EXPECT_FALSE(WriteGifFile(headless, path_.c_str()));
    EXPECT_EQ(ReadAll(path_), precious);
}

TEST_F(GifWriter, AnyFailureRemovesTheFile) {
    OwnedList list;
    Load(&list, EveryKind("GIF89a"));
    OwnedBlock big(MakeImage(300, 700, 8));
    {
        MemoryLock lock(big.data);
        auto* pixels = ImagePixels(lock.As<BitmapHeader>());
        for (uint32_t i = 0; i < 210000; ++i) pixels[i] = static_cast<uint8_t>(i * i >> 5);
    }
    Append(&list, big);
    static_cast<Block&>(big) = {};
    auto attempt = [&](FaultRound& round) {
        WriteAll(path_, {1, 2, 3});
        bool saved = WriteGifFile(list, path_.c_str());
        round.End();
        EXPECT_EQ(saved, round.IsUndisturbed()) << round.Number();
        // What fails before the file is opened leaves the old one.
        EXPECT_TRUE(saved || !FileExists(path_) || ReadAll(path_) == Bytes({1, 2, 3})) << round.Number();
    };
    EXPECT_GE(ForEachFault(&Faults::writesUntilFailure, attempt), 3);
    EXPECT_GE(ForEachFault(&Faults::allocationsUntilFailure, attempt), 9);
    EXPECT_GE(ForEachFault(&Faults::locksUntilFailure, attempt), 9);
}

TEST_F(GifWriter, ImageThatCannotBeEncodedRemovesTheFile) {
    OwnedList list;
    ASSERT_TRUE(NewDocument(&list));
    Block image = MakeImage(2, 2, 8);
    PutImageFields(&image, {0, 0, 3, 2, 7});
    Append(&list, image);
    EXPECT_FALSE(WriteGifFile(list, path_.c_str()));
    EXPECT_FALSE(FileExists(path_));
}

TEST_F(GifWriter, PlacesThatTakeNoFile) {
    OwnedList list;
    ASSERT_TRUE(NewDocument(&list));
    EXPECT_FALSE(WriteGifFile(list, folder_.Path("").c_str())) << "a folder";
    EXPECT_FALSE(WriteGifFile(list, folder_.Path("none/out.gif").c_str()));
    EXPECT_FALSE(WriteGifFile(list, ""));
    EXPECT_TRUE(FileExists(folder_.Path("")));
}
