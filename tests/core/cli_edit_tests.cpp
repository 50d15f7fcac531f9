// zephyr remap, insert, delete and set in the classic manner: what they write, read back, and what they refuse.
#include <cstring>

#include "imaging/dither.h"
#include "imaging/remap.h"
#include "imaging/standard_palette.h"
#include "tests/support/cli_runner.h"
#include "tests/support/picture_files.h"
#include "tests/support/random_images.h"
#include "tests/support/test_blocks.h"

using namespace std::string_literals;

namespace {

// Ends of warnings.
constexpr char kRows[] = "an interlaced image of 2 to 4 rows loses rows";
constexpr char kFits[] = ": saving fits the screen to the images";

constexpr char kAllKinds[] = "1234676";  // of the document; the last one is the identity comment that saving adds

// A folder with a document of one block of each kind and two pictures.
class CliEdit : public testing::Test {
protected:
    void SetUp() override {
        MakeDocument(0x87);
        Random random(5);
        WritePicture(Path("large.gif"), RandomImage(random, 40, 30, 8, {}), 8);
        WritePicture(Path("tiny.gif"), RandomImage(random, 2, 2, 1, {}), 1);
    }

    std::string Path(const std::string& name) const { return folder_.Path(name); }

    CliRun Run(const std::string& command, const Words& behindOut, int status) const {
        Words words = {command, Path("in.gif"), Path("out.gif")};
        words.insert(words.end(), behindOut.begin(), behindOut.end());
        CliRun run = RunClassic(words);
        EXPECT_EQ(run.status, status);
        EXPECT_EQ(run.out, "");
        return run;
    }

    // The command must be done with no word but these warnings about its result; returns that, read back.
    LoadedGif Edit(const std::string& command, const Words& behindOut, const Words& warnings = {}) const {
        std::string expected;
        for (const std::string& warning : warnings)
            expected += "zephyr: " + Path("out.gif") + ": warning: " + warning + "\n";
        EXPECT_EQ(Run(command, behindOut, kExitDone).err, expected);
        return LoadedGif(ReadAll(Path("out.gif")));
    }

    // The command must fail with this in its line, and write nothing.
    void Refuse(const std::string& command, const Words& behindOut, const std::string& message,
                int status = kExitFailed) const {
        const std::string told = Run(command, behindOut, status).err;
        EXPECT_NE(told.find(message), std::string::npos) << told;
        EXPECT_FALSE(FileExists(Path("out.gif")));
    }

    void MakeDocument(int packed) const {
        GifBytes bytes;
        bytes.Header("GIF89a", 9, 9, packed).SmallImage(0x87).Control(1);
        bytes.Extension(0x01, std::string("\x0C\0\0\0\0\0\0\0\0\0\0\0\0", 13), "plain").Comment("comment");
        WriteAll(Path("in.gif"), bytes.Loop(0).Add({0x3B}));
    }

    TempFolder folder_;
};

TEST_F(CliEdit, SetChangesTheFieldsThatItNames) {
    const std::string longest(kMaxTextBytes, 'x');
    const struct {
        Words words;
        Bytes descriptor;
        std::string text = "(none)";
        Words warnings = {};
    } cases[] = {
        // The screen is 2 x 2 as the image fills it.
        {{"0", "width=99", "background=7", "sorted=yes"},
         {'G', 'I', 'F', '8', '9', 'a', 2, 0, 2, 0, 0xC7, 7},
         "(none)",
         {"width became 2, not 99"s + kFits}},
        {{"1", "left=258", "top=3", "interlaced=1"}, {2, 1, 3, 0, 2, 0, 2, 0, 0xC7}, "(none)", {"block 1: "s + kRows}},
        {{"2", "delay=65535", "disposal=previous", "transparent=9", "input=yes"}, {4, 0x0F, 0xFF, 0xFF, 9, 0}},
        {{"2", "disposal=7", "disposal=background", "transparent=9", "transparent=none", "input=1", "input=no"},
         {4, 8, 1, 0, 9, 0}},
        {{"3", "left=1", "top=2", "grid-width=3", "grid-height=300", "cell-width=5", "cell-height=6", "foreground=7",
          "background=255"},
         {12, 1, 0, 2, 0, 3, 0, 44, 1, 5, 6, 7, 255},
         "plain"},
        {{"3", "text=x=\xE2\x82\xAC"}, {12}, "x=\x80"},
        {{"4", "text=a\nb\r\nc\rd\n\ne"}, {}, "a\r\nb\r\nc\r\nd\r\n\r\ne"},
        {{"4", "text=" + longest}, {}, longest},
        {{"5", "iterations=513"}, {11, 'N', 'E', 'T', 'S', 'C', 'A', 'P', 'E', '2', '.', '0', 3, 1, 1, 2, 0}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.words[0] + " " + c.words[1].substr(0, 20));
        LoadedGif list = Edit("set", c.words, c.warnings);
        EXPECT_EQ(KindsOf(list), kAllKinds);
        Block block = BlockAt(list, static_cast<uint32_t>(c.words[0][0] - '0'));
        EXPECT_EQ(Bytes(block.descriptor, block.descriptor + c.descriptor.size()), c.descriptor);
        if (block.kind != kImageBlock) {
            EXPECT_EQ(TextOf(block), c.text);
        }
    }
    const Block header = BlockAt(Edit("set", {"0", "colour:0=#0102Ff", "colour:255=#ffffff"}), 0);
    EXPECT_EQ(header.palette[0], (RgbTriple{1, 2, 255}));
    EXPECT_EQ(header.palette[255], (RgbTriple{255, 255, 255}));
    EXPECT_EQ(header.palette[1], (RgbTriple{1, 2, 3}));
    EXPECT_EQ(KindsOf(Edit("set", {"3", "text="})), "123676") << "a block with an empty text is left out";
}

TEST_F(CliEdit, WhatWillNotBeReadBackIsWarnedOf) {
    const std::string text =
        "a text whose length 255 divides ends the document when it is read; blocks behind it are lost";
    const std::string edge = "an image that reaches beyond 65535 pixels is refused by other programs";
    const std::tuple<Words, Words> cases[] = {
        {{"4", "text=" + std::string(255, 'x')}, {"block 4: " + text}},
        {{"3", "text=" + std::string(510, 'x')}, {"block 3: " + text}},
        {{"4", "text=" + std::string(254, 'x')}, {}},
        {{"4", "text="}, {}},
        {{"1", "left=65533"}, {}},
        {{"1", "left=65534"}, {"block 1: " + edge}},
        {{"1", "top=65535", "interlaced=yes"}, {"block 1: " + edge, "block 1: "s + kRows}},
        {{"0", "width=99", "height=2", "background=1"}, {"width became 2, not 99"s + kFits}},
        {{"0", "height=0"}, {"height became 2, not 0"s + kFits}},
        {{"0", "background=1"}, {}},
    };
    for (const auto& [words, warnings] : cases) Edit("set", words, warnings);

    auto save = [&](const GifBytes& document) { WriteAll(Path("in.gif"), GifBytes(document).Add({0x3B})); };
    GifBytes images = GifBytes().Header("GIF89a", 9, 9, 0x81);
    for (int height = 1; height <= 5; ++height) images.ImageHead(2, height, 0x40).Add({2, 1, 0x2C, 0});
    save(images);
    Edit("save", {}, {"block 2 and 2 more: "s + kRows});
    const std::string long255(255, 'x');
    save(GifBytes().Header("GIF89a", 9, 9, 0).Comment("").Comment(long255).Extension(0x01, std::string(13, 'f'), ""));
    Edit("save", {}, {"block 2 and 1 more: " + text});
    save(GifBytes().Header("GIF89a", 9, 9, 0));
    Edit("set", {"0", "width=99"}, {});
}

TEST_F(CliEdit, WhatIsRefused) {
    Bytes corrupt = ReadAll(Path("large.gif"));
    constexpr size_t kFirstCode = 13 + kPaletteBytes + 12;
    corrupt[kFirstCode] = corrupt[kFirstCode + 1] = 0xFF;  // stands for nothing
    WriteAll(Path("corrupt.gif"), corrupt);
    const std::string tooLong = std::string(kMaxTextBytes, 'x') + "\n", numbered = "they are numbered 0 to 5\n";
    const std::pair<Words, std::string> wrongValues[] = {
        {{"0", "width=65536"}, "zephyr set: width wants a whole number of 0 to 65535 (see"},
        {{"0", "sorted=maybe"}, "zephyr set: sorted wants yes or no (see"},
        {{"0", "colour:abc=#000000"}, "colour:abc wants a whole number of 0 to 255 behind its colon (see"},
        {{"0", "colour:1=#-12345"}, "a colour like #ff8000 (see"},
        {{"0", "colour:1=#12345"}, "a colour like #ff8000 (see"},
        {{"0", "colour:1=1234567"}, "a colour like #ff8000 (see"},
        {{"2", "delay=1 "}, "delay wants a whole number of 0 to 65535 (see"},
        {{"2", "delay=-1"}, "delay wants a whole number of 0 to 65535 (see"},
        {{"2", "transparent=x"}, "transparent wants none or a whole number of 0 to 255 (see"},
        {{"5", "iterations=99999999999"}, "iterations wants a whole number of 0 to 65535 (see"},
        {{"2", "disposal=8"}, "nothing, leave, background, previous or a whole number of 0 to 7 (see"},
        {{"4", "text=good", "text=" + tooLong}, "text wants at most 32767 characters (see"},
        {{"4", "text=\xE6\x97\xA5"}, "only characters that Windows-1252 has (see"},
    };
    for (const auto& [words, message] : wrongValues) Refuse("set", words, message, kExitUsage);
    const std::tuple<const char*, Words, std::string> cases[] = {
        {"set", {"0", "colour:256=#000000"}, "colour:256 wants a whole number of 0 to 255 behind its colon\n"},
        {"set", {"0", "colour=#000000"}, "HEADER blocks have no field colour, but width, height, background, sorted, "},
        {"set", {"6", "delay=1"}, "there is no block 6; " + numbered},
        {"delete", {"1", "0"}, "The header block can't be copied or deleted.\n"},
        {"insert",
         {"--kind=loop"},
         "A LOOP block already exists in this image. Delete it before inserting a new one.\n"},
        {"insert",
         {"--kind=image", "--at=0", Path("corrupt.gif")},
         "corrupt.gif: no readable picture: it is damaged or cut short\n"},
        {"insert",
         {"--kind=image", "--at=0", Path("in.gif"), Path("large.gif")},
         "large.gif: its colours are not the document's: give --remap, --dither or --keep\n"},
    };
    for (const auto& [command, words, message] : cases) Refuse(command, words, message);
    MakeDocument(7);
    Refuse("set", {"0", "colour:1=#123456"}, "colour:1 wants a global palette, which this file lacks\n");
    Refuse("insert", {"--kind=plaintext", "--at=0"}, "no global palette, whose colours a plain text block needs\n");
}

TEST_F(CliEdit, DeleteAndInsertCountTheBlocksOfTheOldDocument) {
    const std::tuple<const char*, Words, const char*> cases[] = {
        {"delete", {"5", "1", "3", "3"}, "1366"},
        {"insert", {"--kind", "control", "--at", "0"}, "13234676"},
        {"insert", {"--kind", "comment", "--at", "4"}, "12346676"},
        {"insert", {"--kind", "plaintext", "--at", "1"}, "12434676"},
        {"insert", {"--kind=image", "--at=2", "--remap", Path("large.gif"), Path("tiny.gif")}, "123224676"},
        {"delete", {"1", "2", "3", "4", "5"}, "16"},
    };
    for (const auto& [command, given, kinds] : cases) {
        Words words = given;
        words.insert(words.end(), {"--owner", "Zo\xC3\xAB", "--organisation=Kites"});
        LoadedGif list = Edit(command, words);
        EXPECT_EQ(KindsOf(list), kinds);
        EXPECT_EQ(TextOf(BlockAt(list, list.count - 1)), "FILE IDENTITY\r\nCreated or modified by\r\nZo\xEB\r\nKites");
        if (list.count == 9) {
            EXPECT_EQ(GetImageFields(BlockAt(list, 3)).width, 40) << "the files in their order";
        }
    }
    std::remove(Path("in.gif").c_str());
    std::rename(Path("out.gif").c_str(), Path("in.gif").c_str());
    LoadedGif list = Edit("insert", {"--kind", "loop", "--at", "1"});
    EXPECT_EQ(KindsOf(list), "1766") << "right behind the header";
}

TEST_F(CliEdit, ColoursAreFittedAsTheOptionsSay) {
    constexpr size_t kBmpHeaderBytes = 14;
    LoadedGif document(ReadAll(Path("in.gif"))), large(ReadAll(Path("large.gif"))), tiny(ReadAll(Path("tiny.gif")));
    const MemoryHandle own = BlockAt(large, 1).data, ofTwoColours = BlockAt(tiny, 1).data;
    const GlobalPalette global = FindGlobalPalette(document);
    for (auto [option, convert] : {std::pair{"--remap", &RemapImage}, {"--dither", &DitherImage}}) {
        Result<MemoryHandle> fitted = convert(own, global.colours, global.depth, nullptr);
        LoadedGif list = Edit("insert", {"--kind", "image", "--at", "0", option, Path("large.gif")});
        EXPECT_TRUE(SameBitmap(BlockAt(list, 1).data, *fitted)) << option;
    }
    for (int packed : {0x87, 7}) {  // with a global palette, and without
        MakeDocument(packed);
        LoadedGif list = Edit("insert", {"--kind", "image", "--at", "0", "--keep", Path("large.gif")});
        EXPECT_EQ(list.result, kReadDone) << packed;
        EXPECT_TRUE(SameBitmap(BlockAt(list, 1).data, own)) << "its pixels in its colours";
        EXPECT_EQ(GetImageFields(BlockAt(list, 1)).packed, 0x87);
    }
    LoadedGif black = Edit("insert", {"--kind", "image", "--at", "0", "--remap", Path("large.gif")});
    EXPECT_EQ(black.result, kReadDone) << "a file that can be read";
    MakeDocument(0x87);
    WriteAll(Path("same.gif"), GifBytes().Header("GIF89a", 2, 2, 0x87).SmallImage().Add({0x3B}));
    LoadedGif same = Edit("insert", {"--kind", "image", "--at", "0", "--keep", Path("same.gif")});
    EXPECT_EQ(GetImageFields(BlockAt(same, 1)).packed, 7) << "the colours are the global ones";

    RgbTriples web;
    int depth;
    StandardPalette(web, &depth, kPaletteWeb);
    for (auto [file, image, option, convert] : {std::tuple{"large.gif", own, "--", &RemapImage},
                                                {"large.gif", own, "--dither", &DitherImage},
                                                {"tiny.gif", ofTwoColours, "--dither", &RemapImage}}) {
        EXPECT_EQ(RunClassic({"remap", Path(file), "1", "--palette=6", option, Path("out.bmp")}).status, kExitDone);
        Result<MemoryHandle> fitted = convert(image, web, depth, nullptr);
        MemoryLock lock(*fitted);
        Bytes bmp = ReadAll(Path("out.bmp"));
        ASSERT_GT(bmp.size(), kBmpHeaderBytes + kPaletteBytes);
        EXPECT_EQ(memcmp(&bmp[kBmpHeaderBytes], lock.Bytes(), bmp.size() - kBmpHeaderBytes), 0) << file << option;
    }
}

}  // namespace
