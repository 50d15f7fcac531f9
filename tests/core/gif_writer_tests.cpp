#include "gif/gif_writer.h"

#include "platform/faults.h"
#include "tests/support/test_blocks.h"

namespace {

class GifWriter : public testing::Test {
protected:
    bool Save(const BlockList& list) {
        File file;
        return file.Create(path_.c_str()) && WriteGif(list, file, user_) && file.Close();
    }
    Bytes Saved(const BlockList& list) {
        EXPECT_TRUE(Save(list));
        return ReadAll(path_);
    }

    Identity user_ = {"Ann", "Kelmor"};
    TempFolder folder_;
    std::string path_ = folder_.Path("out.gif");
};

GifBytes Bare() {
    return GifBytes().Header("GIF89a", 1, 1, 0);
}

// One of everything that is saved, in a form that saving does not change.
GifBytes EveryKind(const char* signature) {
    return GifBytes()
        .Header(signature, 5, 4, 0xF1)
        .Add({0x21, 0xFF, 11})
        .Text("NETSCAPE2.0")
        .Add({3, 1, 7, 0, 9, 0x21, 0xF9, 4, 9, 5, 0, 3, 6})
        .SmallImage(1)
        .SmallImage(0x81 | 0x20)
        .Comment("a\r\nb")
        .Extension(0x01, "xabcdefghijkl", std::string(254, 't'))
        .Extension(0xFF, "\x0DXMP DataXMP", std::string("d\0e", 3));
}

GifBytes WithEnd(GifBytes bytes) {
    return bytes.Comment("FILE IDENTITY\r\nCreated or modified by\r\nAnn\r\nKelmor").Add({0x3B});
}

}  // namespace

TEST_F(GifWriter, DocumentIsSavedAsItWasLoaded) {
    LoadedGif document(EveryKind("GIF87a"));
    EXPECT_EQ(KindsOf(document), "17322645");
    EXPECT_EQ(Saved(document), WithEnd(EveryKind("GIF89a")));  // kQuirkAlwaysGif89a
    EXPECT_EQ(BlockAt(document, 0).descriptor[4], '7') << "the document in memory keeps its version";
    EXPECT_EQ(KindsOf(document), "17322645") << "the identity is in the file only";  // kQuirkSavedFileIsSigned
}

// kQuirkBlockNamesDropped, kQuirkDatalessBlocksDropped
TEST_F(GifWriter, WhatIsNotSaved) {
    LoadedGif document(Bare().Extension(0xFF, "\x0BKELMORnb1.0", "xx"));
    for (uint16_t kind : {kEmptyBlock, kPlainTextBlock, kApplicationBlock, kCommentBlock, kUnknownBlock})
        Append(&document, OfKind(kind));
    EXPECT_EQ(KindsOf(document), "1804569");
    EXPECT_EQ(Saved(document), WithEnd(Bare()));
}

// kQuirkFullTextEndsTwice
TEST_F(GifWriter, TextLengths) {
    for (size_t length : {0u, 1u, 254u, 255u, 256u, 510u, 32767u}) {
        std::string text(length, 'x');
        LoadedGif document(Bare());
        Block unknown = MakeText(kUnknownBlock, text);
        unknown.descriptor[0] = 0x42;
        Append(&document, unknown);
        GifBytes expected = Bare().Extension(0x42, "", text);
        if (length % 255 == 0) expected.Add({0});
        EXPECT_EQ(Saved(document), WithEnd(expected)) << length;
    }
}

TEST_F(GifWriter, WhatStandsBehindATextMayBeLost) {
    const std::tuple<uint16_t, size_t, const char*> cases[] = {
        {kCommentBlock, 0, "1636"}, {kCommentBlock, 254, "1636"},   {kCommentBlock, 255, "16"},
        {kPlainTextBlock, 0, "14"}, {kPlainTextBlock, 256, "1436"}, {kPlainTextBlock, 510, "14"},
    };
    for (const auto& [kind, length, kinds] : cases) {
        SCOPED_TRACE(testing::Message() << kind << ", " << length);
        std::string text(length, 'x');
        LoadedGif document(Bare());
        Append(&document, MakeText(kind, text));
        Append(&document, OfKind(kControlBlock));
        LoadedGif again(Saved(document));
        EXPECT_EQ(KindsOf(again), kinds);
        EXPECT_EQ(TextOf(BlockAt(again, 1)), text);
    }
}

TEST_F(GifWriter, IdentityCommentStandsOnce) {
    Bytes once = Saved(LoadedGif(EveryKind("GIF89a")));
    LoadedGif again(once);
    EXPECT_EQ(Saved(again), once);
    user_ = {std::string(259, 'o'), std::string(259, 'p')};
    std::string text = "FILE IDENTITY\r\nCreated or modified by\r\n" + user_.owner + "\r\n" + user_.organisation;
    once.pop_back();
    EXPECT_EQ(Saved(again), GifBytes().Add(once).Comment(text).Add({0x3B}));

    BlockList others;
    for (const char* other : {"texT", "tex", "text "}) Append(&others, MakeText(kCommentBlock, other));
    Append(&others, MakeText(kPlainTextBlock, "text"));
    EXPECT_FALSE(HasIdenticalComment(others, "text"));
    Append(&others, MakeText(kCommentBlock, "text"));
    EXPECT_TRUE(HasIdenticalComment(others, "text"));
}

TEST_F(GifWriter, ASaveIsWholeOrGone) {
    LoadedGif document(EveryKind("GIF89a"));
    const Bytes whole = Saved(document);
    for (long Faults::*counter :
         {&Faults::allocationsUntilFailure, &Faults::locksUntilFailure, &Faults::writesUntilFailure}) {
        long n = 0;
        for (bool failed = true; failed; ++n) {
            remove(path_.c_str());
            faults.onlyOne = true;
            faults.*counter = n;
            bool saved = Save(document);
            failed = faults.*counter == Faults::kPast;
            faults = {};
            EXPECT_EQ(saved, !failed) << n;
            EXPECT_EQ(ReadAll(path_), failed ? Bytes() : whole) << n;
            EXPECT_EQ(FileExists(path_), !failed) << n;
        }
        EXPECT_GT(n, 1);
    }
}

TEST_F(GifWriter, DocumentWithoutHeaderLeavesTheTargetAlone) {
    WriteAll(path_, {1, 2, 3});
    BlockList empty, headless;
    Append(&headless, MakeText(kCommentBlock, "x"));
    EXPECT_FALSE(WriteGifFile(empty, path_.c_str()));
    EXPECT_FALSE(WriteGifFile(headless, path_.c_str()));
    EXPECT_EQ(ReadAll(path_), Bytes({1, 2, 3}));
}
