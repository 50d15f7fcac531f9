// zephyr repair: what it does about each kind of damage, and that it keeps every picture.
#include <filesystem>

#include "tests/support/cli_runner.h"
#include "tests/support/random_images.h"
#include "tests/support/test_blocks.h"

namespace {

LoadedGif WholeGif(const std::string& path) {
    return LoadedGif(ReadAll(path), Manner::kWhole);
}

// Whether both pictures have the same pixels in the same colours; their bitmaps may differ in depth.
bool SamePicture(const MemoryHandle& a, const MemoryHandle& b) {
    if (SameBitmap(a, b)) return true;
    ImageLock one(a), other(b);
    if (!one || !other || one->width != other->width || one->height != other->height) return false;
    RgbTriples colours = {}, otherColours = {};
    GetImagePalette(one, colours);
    GetImagePalette(other, otherColours);
    for (int y = 0; y < one->height; ++y) {
        for (int x = 0; x < one->width; ++x) {
            const uint32_t pixel = GetImagePixel(one, x, y), otherPixel = GetImagePixel(other, x, y);
            if (pixel != otherPixel || colours[pixel] != otherColours[otherPixel]) return false;
        }
    }
    return true;
}

class CliRepair : public testing::Test {
protected:
    // Repairs what stands at in_; returns what is printed.
    std::string Repair(const Words& options = {}) const {
        Words words = {"repair", in_, out_};
        words.insert(words.end(), options.begin(), options.end());
        CliRun run = RunCli(words);
        EXPECT_EQ(run.status, kExitDone);
        return run.out;
    }

    // Every image of the file at in_ is in the one at out_, unless `told` says that it was left out.
    void ExpectPicturesKept(const std::string& told) const {
        const LoadedGif before = WholeGif(in_), after = WholeGif(out_);
        uint32_t next = 0;
        for (uint32_t index = 0; index < before.count; ++index) {
            const Block image = BlockAt(before, index);
            const std::string line = "block " + std::to_string(index) + " (IMAGE): it ";
            const bool isGone = told.find(line + "is left out") != std::string::npos ||
                                told.find(line + "and its control block are left out") != std::string::npos;
            if (image.kind != kImageBlock || isGone) continue;
            while (next < after.count && after.blocks[next].kind != kImageBlock) ++next;
            ASSERT_LT(next, after.count) << "image " << index << " is missing";
            const Block kept = BlockAt(after, next++);
            EXPECT_EQ(static_cast<bool>(kept.data), static_cast<bool>(image.data)) << index;
            EXPECT_TRUE(!image.data || SamePicture(image.data, kept.data)) << index;
            EXPECT_EQ(GetImageFields(kept).left, GetImageFields(image).left);
        }
    }

    // The repaired file has nothing left to be repaired.
    void ExpectClean() const {
        const LoadedGif repaired = WholeGif(out_);
        for (const Damage& damage : repaired.report.damages)
            EXPECT_EQ(damage.kind, DamageKind::kPictureTooLarge) << DescribeDamage(damage);
        const std::string again = folder_.Path("again");
        EXPECT_EQ(RunCli({"repair", out_, again}).out, "nothing to repair\n");
        EXPECT_EQ(ReadAll(again), ReadAll(out_));
    }

    TempFolder folder_;
    std::string in_ = folder_.Path("in"), out_ = folder_.Path("out");
};

TEST_F(CliRepair, MendsEachKindOfDamageAndNothingElse) {
    const GifBytes start = GifBytes().Header("GIF89a", 2, 2, 0x81), image = GifBytes(start).SmallImage();
    const GifBytes clean = GifBytes(image).Comment("a\tb").Extension(0xCE, "", "x").Add({0x3B});
    const GifBytes control = GifBytes(start).Control(2, 1, 3);
    auto ended = [](const GifBytes& bytes) { return GifBytes(bytes).Add({0x3B}); };
    auto application = [&](std::string_view fixed) {
        return GifBytes(image).Add({0x21, 0xFF, static_cast<int>(fixed.size())}).Text(fixed);
    };
    const struct {
        const char* what;
        GifBytes in, out;
        std::string told;
    } cases[] = {
        {"no damage", clean, clean, "nothing to repair\n"},
        {"around the document", GifBytes().Repeat('p', 128).Add(clean).Text("xyz"), clean,
         "128 bytes before the signature are left out\n3 bytes behind the trailer are left out\n2 repairs\n"},
        {"between blocks", GifBytes(start).Add({7, 7}).SmallImage().Add({9, 0x3B}), ended(image),
         "block 1 (IMAGE): 2 bytes before it, which start no block, are left out\n"
         "1 byte behind the last block is left out\n2 repairs\n"},
        {"end", image, ended(image), "the trailer is added\n1 repair\n"},
        {"end in an introducer", GifBytes(image).Add({0x21}), ended(image),
         "1 byte behind the last block is left out\nthe trailer is added\n2 repairs\n"},
        {"version", GifBytes().Header("GIF90a", 2, 2, 0x81).SmallImage().Add({0x3B}), ended(image),
         "block 0 (HEADER): its version becomes GIF89a\n1 repair\n"},
        {"cut palette", GifBytes().Text("GIF89a").Word(2).Word(2).Add({0x81, 0, 0, 1, 2, 3, 4, 5}),
         GifBytes().Text("GIF89a").Word(2).Word(2).Add({0x81, 0, 0, 1, 2, 3, 4, 5}).Repeat(0, 7).Add({0x3B}),
         "block 0 (HEADER): its palette is cut off; the colours that are missing become black\n"
         "the trailer is added\n2 repairs\n"},
        {"long control", GifBytes(start).Add({0x21, 0xF9, 5, 1, 2, 0, 3, 9, 0}).SmallImage().Add({0x3B}),
         GifBytes(control).SmallImage().Add({0x3B}),
         "block 1 (CONTROL): its fixed part becomes as long as it has to be\n1 repair\n"},
        {"control with data", GifBytes(start).Add({0x21, 0xF9, 4, 1, 2, 0, 3, 1, 9, 0}).SmallImage().Add({0x3B}),
         GifBytes(control).SmallImage().Add({0x3B}),
         "block 1 (CONTROL): what it has behind its fixed part is left out\n1 repair\n"},
        {"short control", GifBytes(start).Add({0x21, 0xF9, 2, 1, 2, 0}).SmallImage().Add({0x3B}), ended(image),
         "block 1 (UNKNOWN TYPE): left out, as its fixed part is too short\n1 repair\n"},
        {"long text head", GifBytes(start).Add({0x21, 1, 13}).Repeat(5, 13).SubBlocks("text").Add({0x3B}),
         GifBytes(start).Add({0x21, 1, 12}).Repeat(5, 12).SubBlocks("text").Add({0x3B}),
         "block 1 (PLAIN TEXT): its fixed part becomes as long as it has to be\n1 repair\n"},
        {"long identifier", application("ABCDEFGHIJKLM").SubBlocks("data").Add({0x3B}),
         application("ABCDEFGHIJK").Add({2}).Text("LM").SubBlocks("data").Add({0x3B}),
         "block 2 (APPLICATION-DEFINED): its fixed part becomes as long as it has to be\n1 repair\n"},
        {"short identifier", application("ABCDEFGH").SubBlocks("data").Add({0x3B}),
         application(std::string_view("ABCDEFGH\0\0\0", 11)).SubBlocks("data").Add({0x3B}),
         "block 2 (UNKNOWN TYPE): its fixed part becomes as long as it has to be\n1 repair\n"},
        {"cut comment", GifBytes(image).Add({0x21, 0xFE, 5, 'a', 9}),
         GifBytes(image).Add({0x21, 0xFE, 2, 'a', 9, 0, 0x3B}),
         "block 2 (COMMENT): it is ended, as the file breaks off in it\nthe trailer is added\n2 repairs\n"},
        {"cut loop", GifBytes(image).Add({0x21, 0xFF, 11}).Text("NETSCAPE2.0").Add({3, 1, 7, 0}),
         GifBytes(image).Loop(7).Add({0x3B}),
         "block 2 (LOOP): it is ended, as the file breaks off in it\nthe trailer is added\n2 repairs\n"},
        {"cut application", application("ABCDEFGHIJK").Add({9, 1}), ended(image),
         "block 2 (APPLICATION-DEFINED): left out, as the file breaks off in it\nthe trailer is added\n2 repairs\n"},
        {"no codes", GifBytes(control).Comment("x").ImageHead(2, 2, 0).Add({2, 0}).SmallImage().Add({0x3B}),
         GifBytes(start).Comment("x").SmallImage().Add({0x3B}),
         "block 3 (IMAGE): it and its control block are left out, as nothing of its picture can be decoded\n"
         "1 repair\n"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        WriteAll(in_, c.in);
        EXPECT_EQ(Repair(), c.told);
        EXPECT_EQ(ReadAll(out_), c.out);
    }
}

TEST_F(CliRepair, DamagedPicturesAreEncodedAsTheyAreShown) {
    const GifBytes start = GifBytes().Header("GIF89a", 2, 2, 0x81);
    const struct {
        Bytes in;
        const char* told;
        int packed;
    } cases[] = {
        {GifBytes(start).ImageHead(2, 2, 0).Add({2, 2, 0x8C, 0x56, 0, 0x3B}),
         "block 1 (IMAGE): its data ends after 1 of 2 rows; the rest is left empty\n1 repair\n", 1},
        // Pixels beyond the four colours of the document, cut off by the end of the file.
        {GifBytes(start).ImageHead(2, 2, 0).Add({3, 9, 0x58, 0x76, 0x09}),
         "block 1 (IMAGE): its data ends after 1 of 2 rows; the rest is left empty\nthe trailer is added\n2 repairs\n",
         0x82},
        {GifBytes().Header("GIF89a", 2, 2, 0).SmallImage().Add({0x3B}),
         "block 1 (IMAGE): it gets a palette of its own, as there is none\n1 repair\n", 0x81},
    };
    for (const auto& [in, told, packed] : cases) {
        WriteAll(in_, in);
        EXPECT_EQ(Repair(), told);
        EXPECT_EQ(GetImageFields(BlockAt(WholeGif(out_), 1)).packed, packed) << told;
        ExpectPicturesKept(told);
        ExpectClean();
    }
}

TEST_F(CliRepair, MadeFilesKeepAllPicturesAndAreCleanThen) {
    size_t files = 0;
    for (const auto& entry : std::filesystem::directory_iterator(TEST_DATA)) {
        SCOPED_TRACE(entry.path().filename().string());
        WriteAll(in_, ReadAll(entry.path().string()));
        if (WholeGif(in_).result != kReadDone) continue;
        const std::string told = Repair();
        ExpectPicturesKept(told);
        ExpectClean();
        if (told == "nothing to repair\n") {
            EXPECT_EQ(ReadAll(out_), ReadAll(in_));
        }
        ++files;
    }
    EXPECT_GT(files, 100u);
}

TEST_F(CliRepair, TakesTheOptionsOfSaving) {
    WriteAll(in_, GifBytes().Header("GIF89a", 9, 9, 0x81).SmallImage());
    EXPECT_EQ(Repair({"--fit-screen", "--owner=O", "--organisation=G"}), "the trailer is added\n1 repair\n");
    EXPECT_EQ(ReadAll(out_), GifBytes()
                                 .Header("GIF89a", 2, 2, 0x81)
                                 .SmallImage()
                                 .Comment("FILE IDENTITY\r\nCreated or modified by\r\nO\r\nG")
                                 .Add({0x3B}));
    EXPECT_EQ(Repair({"--classic", "--owner=O", "--organisation=G"}), "");
    EXPECT_EQ(KindsOf(LoadedGif(ReadAll(out_))), "126");
    EXPECT_EQ(RunCli({"repair", folder_.Path("none"), out_}).status, kExitFailed);
    EXPECT_EQ(RunCli({"repair", in_}).status, kExitUsage);
}

}  // namespace
