// zephyr remap, insert, delete and set: what they write, read back, and what they refuse.
#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>

#include "gif/default_blocks.h"
#include "gif/descriptor.h"
#include "gif/gif_reader.h"
#include "gif/gif_writer.h"
#include "imaging/dither.h"
#include "imaging/remap.h"
#include "imaging/standard_palette.h"
#include "tests/support/cli_runner.h"

namespace {

namespace fs = std::filesystem;

constexpr int kBmpHeaderBytes = 14;

using Palette = std::array<RgbTriple, kPaletteEntries>;

struct List : BlockList {
    List() : BlockList{} {}
    ~List() { DestroyBlockList(this); }
    List(const List&) = delete;
    List& operator=(const List&) = delete;
};

Block BlockAt(const BlockList& list, uint32_t index) {
    Block block = {};
    EXPECT_TRUE(GetBlock(list, &block, index)) << index;
    return block;
}

std::string TextAt(const BlockList& list, uint32_t index) {
    Block block = BlockAt(list, index);
    MemoryLock lock(block.data);
    return lock ? std::string(lock.As<char>(), block.dataLength) : "";
}

// The document's bytes in the bitmap, header and colour table included.
std::string BitmapBytes(MemoryHandle image) {
    MemoryLock lock(image);
    auto* bitmap = lock.As<const BitmapHeader>();
    auto* start = lock.As<const char>();
    auto* pixels = reinterpret_cast<const char*>(ImagePixels(bitmap));
    return std::string(start, pixels + bitmap->imageBytes);
}

// A folder with a document of one block of each kind and some images to insert.
class CliEdit : public testing::Test {
protected:
    void SetUp() override {
        folder_ = fs::temp_directory_path() / ("zephyr-edit-" + std::to_string(std::random_device()()));
        fs::create_directories(folder_);
        StandardPalette(web_.data(), nullptr, kPaletteWeb);
        StandardPalette(grey_.data(), nullptr, kPaletteGrey);
        MakeDocument();
        MakeImageFile("web.gif", 7, 3, 8, web_);
        MakeImageFile("grey.gif", 40, 30, 8, grey_);
        MakeImageFile("tiny.gif", 2, 2, 1, grey_);
    }
    void TearDown() override { fs::remove_all(folder_); }

    std::string Path(const std::string& name) const { return (folder_ / name).u8string(); }
    std::string In() const { return Path("in.gif"); }
    std::string Out() const { return Path("out.gif"); }

    std::string Content(const std::string& name) const {
        std::ifstream file(folder_ / name, std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(file), {});
    }
    void Write(const std::string& name, const std::string& content) const {
        std::ofstream(folder_ / name, std::ios::binary) << content;
    }

    // The command must be done without a word, and its result be read back into `list`.
    void Edit(const std::string& command, const Words& behindOut, BlockList* list) const {
        Words words = {command, In(), Out()};
        words.insert(words.end(), behindOut.begin(), behindOut.end());
        CliRun run = RunCli(words);
        EXPECT_EQ(run.status, kExitDone) << run.err;
        EXPECT_EQ(run.out + run.err, "");
        DestroyBlockList(list);
        ASSERT_TRUE(CreateBlockList(list));
        ASSERT_EQ(ReadGifFile(list, Out().c_str()), kReadDone);
    }

    // The command must fail with one line that holds `message`, and write nothing.
    void Refuse(const std::string& command, const Words& behindOut, int status, const std::string& message) const {
        Words words = {command, In(), Out()};
        words.insert(words.end(), behindOut.begin(), behindOut.end());
        CliRun run = RunCli(words);
        EXPECT_EQ(run.status, status) << run.err;
        EXPECT_EQ(run.out, "");
        EXPECT_EQ(run.err.find('\n') + 1, run.err.size()) << run.err;
        EXPECT_NE(run.err.find(message), std::string::npos) << run.err;
        EXPECT_FALSE(fs::exists(folder_ / "out.gif"));
    }

    // The kinds as digits, the writer's own comment at the end left out.
    static std::string Kinds(const BlockList& list) {
        std::string kinds;
        for (uint32_t i = 0; i + 1 < list.count; ++i) kinds += std::to_string(BlockAt(list, i).kind);
        return kinds;
    }

    void MakeImageFile(const std::string& name, int width, int height, int depth, const Palette& palette) {
        List list;
        ASSERT_TRUE(NewDocument(&list));
        Block header = BlockAt(list, 0);
        memcpy(header.palette, palette.data(), kPaletteBytes);
        HeaderFields fields = GetHeaderFields(header);
        fields.packed = static_cast<uint8_t>(kHasPalette | (depth - 1));
        PutHeaderFields(&header, fields);
        ASSERT_TRUE(PutBlock(&list, header, 0));
        AppendImage(&list, width, height, depth, palette);
        ASSERT_TRUE(WriteGifFile(list, Path(name).c_str()));
    }

    // Without the global palette's flag, the file has no global palette.
    void MakeDocument(uint8_t headerFlags = kHasPalette) {
        List list;
        ASSERT_TRUE(NewDocument(&list));
        Block header = BlockAt(list, 0);
        PutHeaderFields(&header, {1, 1, static_cast<uint8_t>(headerFlags | 7), 0, 0});
        ASSERT_TRUE(PutBlock(&list, header, 0));
        AppendImage(&list, 4, 2, 8, web_, kHasPalette);
        int place = 1;
        for (uint16_t kind : {kControlBlock, kPlainTextBlock, kCommentBlock, kLoopBlock})
            ASSERT_TRUE(InsertBlock(nullptr, &list, &place, kind, nullptr, nullptr));
        ASSERT_TRUE(WriteGifFile(list, In().c_str()));
    }

    Palette web_, grey_;

private:
    // Every index in turn.
    static MemoryHandle MakeBitmap(int width, int height, int depth, const Palette& palette) {
        MemoryHandle image = CreateImageBitmap(width, height, palette.data(), depth);
        MemoryLock lock(image);
        for (int i = 0; i < width * height; ++i)
            SetImagePixel(lock.As<BitmapHeader>(), i % width, i / width, static_cast<uint32_t>(i & ((1 << depth) - 1)));
        return image;
    }

    static void AppendImage(BlockList* list, int width, int height, int depth, const Palette& palette,
                            uint8_t flags = 0) {
        Block image = {};
        image.kind = kImageBlock;
        image.data = MakeBitmap(width, height, depth, palette);
        if (flags & kHasPalette) memcpy(image.palette, palette.data(), kPaletteBytes);
        PutImageFields(&image, {0, 0, static_cast<uint16_t>(width), static_cast<uint16_t>(height),
                                static_cast<uint8_t>(flags | (depth - 1))});
        ASSERT_TRUE(AppendBlock(list, &image));
    }

    fs::path folder_;
};

constexpr char kAllKinds[] = "123467";

TEST_F(CliEdit, SetChangesTheFieldsThatItNames) {
    struct Case {
        const char* index;
        Words assignments;
        std::vector<uint8_t> descriptor;
    };
    const Case cases[] = {
        // The screen is 4 x 2 as the image fills it.
        {"0",
         {"width=99", "height=99", "background=7", "sorted=yes"},
         {'G', 'I', 'F', '8', '9', 'a', 4, 0, 2, 0, 0xC7, 7}},
        {"1", {"left=258", "top=3", "interlaced=1"}, {2, 1, 3, 0, 4, 0, 2, 0, 0xC7}},
        {"1", {"interlaced=yes", "interlaced=no"}, {0, 0, 0, 0, 4, 0, 2, 0, 0x87}},
        {"2", {"delay=65535", "disposal=previous", "transparent=9", "input=yes"}, {4, 0x0F, 0xFF, 0xFF, 9, 0}},
        {"2", {"disposal=7", "transparent=9", "transparent=none"}, {4, 0x1C, 1, 0, 9, 0}},
        {"2", {"disposal=7", "disposal=nothing"}, {4, 0, 1, 0, 0, 0}},
        {"2", {"disposal=leave"}, {4, 4, 1, 0, 0, 0}},
        {"2", {"disposal=background"}, {4, 8, 1, 0, 0, 0}},
        {"3",
         {"left=1", "top=2", "grid-width=3", "grid-height=300", "cell-width=5", "cell-height=6", "foreground=7",
          "background=255"},
         {12, 1, 0, 2, 0, 3, 0, 44, 1, 5, 6, 7, 255}},
        {"5", {"iterations=513"}, {11, 'N', 'E', 'T', 'S', 'C', 'A', 'P', 'E', '2', '.', '0', 3, 1, 1, 2, 0}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.index) + " " + c.assignments[0]);
        Words words = {c.index};
        words.insert(words.end(), c.assignments.begin(), c.assignments.end());
        List list;
        Edit("set", words, &list);
        EXPECT_EQ(Kinds(list), kAllKinds);
        Block block = BlockAt(list, static_cast<uint32_t>(c.index[0] - '0'));
        std::vector<uint8_t> bytes(block.descriptor, block.descriptor + c.descriptor.size());
        EXPECT_EQ(bytes, c.descriptor);
    }
}

TEST_F(CliEdit, SetKeepsTextsInTheDocumentsEncodingAndLineEnds) {
    const std::string longest(kMaxTextBytes, 'x');
    const std::pair<std::string, std::string> cases[] = {
        {"Zo\xC3\xAB costs 5 \xE2\x82\xAC", "Zo\xEB costs 5 \x80"},
        {"a\nb\r\nc\rd\n\ne", "a\r\nb\r\nc\r\nd\r\n\r\ne"},
        {"x=y", "x=y"},
        {longest, longest},
    };
    for (const auto& [given, kept] : cases)
        for (uint32_t index : {3u, 4u}) {
            List list;
            Edit("set", {std::to_string(index), "text=" + given}, &list);
            EXPECT_EQ(TextAt(list, index), kept) << index;
            EXPECT_EQ(Kinds(list).substr(0, 5), std::string(kAllKinds).substr(0, 5));
        }
}

TEST_F(CliEdit, ABlockWithAnEmptyTextIsLeftOut) {
    List list;
    Edit("set", {"3", "text="}, &list);
    EXPECT_EQ(Kinds(list), "12367");
    Edit("set", {"4", "text="}, &list);
    EXPECT_EQ(Kinds(list), "12347");
}

TEST_F(CliEdit, SetChangesGlobalColours) {
    List list;
    Edit("set", {"0", "colour:0=#0102Ff", "colour:255=#ffffff"}, &list);
    Palette expected = web_;
    expected[0] = {1, 2, 255};
    expected[255] = {255, 255, 255};
    EXPECT_EQ(memcmp(BlockAt(list, 0).palette, expected.data(), kPaletteBytes), 0);
}

TEST_F(CliEdit, SetRefusesWhatTheBlockCanNotTake) {
    struct Case {
        Words words;
        const char* message;
    };
    const std::string tooLong(kMaxTextBytes, 'x');
    const Case cases[] = {
        {{"0", "width=65536"}, "block 0: width wants a whole number of 0 to 65535"},
        {{"0", "background=-1"}, "block 0: background wants a whole number of 0 to 255"},
        {{"0", "sorted=maybe"}, "block 0: sorted wants yes or no"},
        {{"0", "colour:256=#000000"}, "block 0: colour:256 wants a whole number of 0 to 255 behind its colon"},
        {{"0", "colour:=#000000"}, "block 0: colour: wants a whole number"},
        {{"0", "colour=#000000"}, "block 0: HEADER blocks have no field colour, but width, height"},
        {{"0", "colour:1=#12345"}, "block 0: colour:1 wants a colour like #ff8000"},
        {{"0", "colour:1=#12345g"}, "a colour like"},
        {{"0", "colour:1=#-12345"}, "a colour like"},
        {{"0", "colour:1=1234567"}, "a colour like"},
        {{"1", "delay=1"}, "block 1: IMAGE blocks have no field delay, but left, top, interlaced"},
        {{"2", "delay=1 "}, "block 2: delay wants"},
        {{"2", "delay="}, "block 2: delay wants"},
        {{"2", "disposal=8"}, "nothing, leave, background, previous or a whole number of 0 to 7"},
        {{"2", "transparent=256"}, "none or a whole number of 0 to 255"},
        {{"3", "cell-width=256"}, "a whole number of 0 to 255"},
        {{"4", "text=good", "text=" + tooLong + "\n"}, "block 4: text wants at most 32767 characters"},
        {{"4", "text=good", "text=\xE6\x97\xA5"}, "only characters that Windows-1252 has"},
        {{"4", "text=\xFF"}, "only characters that Windows-1252 has"},
        {{"5", "iterations=1e3"}, "block 5: iterations wants"},
        {{"7", "delay=1"}, "no block 7"},
        {{"x", "delay=1"}, "no block x"},
    };
    for (const Case& c : cases) Refuse("set", c.words, kExitFailed, c.message);
    MakeDocument(0);
    Refuse("set", {"0", "colour:1=#123456"}, kExitFailed, "colour:1 wants a global palette, which this file lacks");
}

TEST_F(CliEdit, DeleteTakesTheNumbersOfTheOldDocument) {
    const std::pair<Words, const char*> cases[] = {
        {{"1"}, "13467"},
        {{"2", "4"}, "1247"},
        {{"5", "1", "3"}, "136"},
        {{"3", "3"}, "12367"},
        {{"1", "2", "3", "4", "5"}, "1"},
    };
    for (const auto& [indexes, kinds] : cases) {
        List list;
        Edit("delete", indexes, &list);
        EXPECT_EQ(Kinds(list), kinds);
    }
}

TEST_F(CliEdit, DeleteRefusesTheHeaderAndBlocksThatDoNotExist) {
    Refuse("delete", {"1", "0"}, kExitFailed, "The header block can't be copied or deleted.");
    Refuse("delete", {"1", "7"}, kExitFailed, "no block 7");
    Refuse("delete", {"two"}, kExitFailed, "no block two");
}

TEST_F(CliEdit, InsertPutsNewBlocksBehindTheGivenOne) {
    struct Case {
        const char* kind;
        const char* at;
        const char* kinds;
    };
    ASSERT_EQ(RunCli({"delete", In(), In(), "5"}).status, kExitDone);
    const Case cases[] = {
        {"control", "0", "132346"}, {"comment", "4", "123466"},  {"plaintext", "1", "124346"},
        {"loop", "3", "172346"},    {"loop", nullptr, "172346"},
    };
    for (const Case& c : cases) {
        Words words = {"--kind", c.kind};
        if (c.at) words.insert(words.end(), {"--at", c.at});
        List list;
        Edit("insert", words, &list);
        EXPECT_EQ(Kinds(list), c.kinds) << c.kind;
    }
}

TEST_F(CliEdit, InsertedImagesFollowOneAnother) {
    List list;
    Edit("insert", {"--kind=image", "--at=2", "--remap", Path("grey.gif"), Path("web.gif"), Path("tiny.gif")}, &list);
    EXPECT_EQ(Kinds(list), "123222467");
    const std::pair<int, int> sizes[] = {{40, 30}, {7, 3}, {2, 2}};
    for (uint32_t i = 0; i < 3; ++i) {
        int width, height;
        EXPECT_TRUE(GetImageInfo(BlockAt(list, 3 + i).data, &width, &height, nullptr, nullptr));
        EXPECT_EQ(std::make_pair(width, height), sizes[i]);
    }
    HeaderFields header = GetHeaderFields(BlockAt(list, 0));
    EXPECT_EQ(std::make_pair(header.screenWidth, header.screenHeight), std::make_pair(uint16_t{40}, uint16_t{30}));
}

TEST_F(CliEdit, InsertFitsColoursAsItIsTold) {
    List greyFile;
    ASSERT_TRUE(CreateBlockList(&greyFile));
    ASSERT_EQ(ReadGifFile(&greyFile, Path("grey.gif").c_str()), kReadDone);
    MemoryHandle own = BlockAt(greyFile, 1).data;
    OwnedMemory remapped(RemapImage(own, web_.data(), 8, 0)), dithered(DitherImage(own, web_.data(), 8, 0));
    const std::pair<const char*, std::string> cases[] = {
        {"--remap", BitmapBytes(remapped.Get())},
        {"--dither", BitmapBytes(dithered.Get())},
        {"--keep", BitmapBytes(own)}};  // its pixels; the colours they stand for become the document's
    constexpr size_t kPixels = sizeof(BitmapHeader) + 256 * sizeof(RgbQuad);
    for (const auto& [option, expected] : cases) {
        List list;
        Edit("insert", {"--kind", "image", "--at", "0", option, Path("grey.gif")}, &list);
        EXPECT_EQ(BitmapBytes(BlockAt(list, 1).data).substr(kPixels), expected.substr(kPixels)) << option;
        EXPECT_EQ(GetImageFields(BlockAt(list, 1)).packed, 7);
    }
    EXPECT_NE(cases[0].second, cases[1].second);
}

TEST_F(CliEdit, InsertStopsAtTheFirstImageThatDoesNotCome) {
    std::string web = Content("web.gif");
    constexpr size_t kImageStart = 13 + kPaletteBytes;  // its introducer
    Write("cut.gif", web.substr(0, kImageStart + 5));
    std::string corrupt = web;
    corrupt.replace(kImageStart + 12, 2, "\xFF\xFF");  // the first code stands for nothing
    Write("corrupt.gif", corrupt);
    Write("text.gif", "no picture");
    Write("empty.gif", "");
    Write("headeronly.gif", web.substr(0, kImageStart) + ";");
    const std::pair<const char*, const char*> cases[] = {
        {"missing.gif", "missing.gif: can't be opened"},
        {"cut.gif", "cut.gif: no image in it that can be read"},
        {"corrupt.gif", "corrupt.gif: no image in it that can be read"},
        {"text.gif", "text.gif: no image in it that can be read"},
        {"empty.gif", "empty.gif: no image in it that can be read"},
        {"headeronly.gif", "headeronly.gif: no image in it that can be read"},
        {"grey.gif", "grey.gif: its colours are not the document's: give --remap, --dither or --keep"},
        {"tiny.gif", "tiny.gif: its colours are not the document's: give --remap, --dither or --keep"},
    };
    for (const auto& [name, message] : cases)
        Refuse("insert", {"--kind", "image", "--at", "0", Path("web.gif"), Path(name)}, kExitFailed, message);
}

TEST_F(CliEdit, InsertRefusesWhatTheDocumentCanNotTake) {
    Refuse("insert", {"--kind", "loop"}, kExitFailed, "in.gif: A LOOP block already exists in this image.");
    Refuse("insert", {"--kind", "control", "--at", "7"}, kExitFailed, "in.gif: no block 7");
    Refuse("insert", {"--kind", "control", "--at", "-1"}, kExitFailed, "in.gif: no block -1");
    MakeDocument(0);
    Refuse("insert", {"--kind", "plaintext", "--at", "0"}, kExitFailed, "in.gif: there is no global palette");
}

TEST_F(CliEdit, RemapWritesTheImageInTheStandardPalette) {
    List document;
    ASSERT_TRUE(CreateBlockList(&document));
    ASSERT_EQ(ReadGifFile(&document, In().c_str()), kReadDone);
    for (int kind = 0; kind <= 9; ++kind)
        for (bool dither : {false, true}) {
            RgbTriples palette;
            int depth;
            StandardPalette(palette, &depth, kind);
            OwnedMemory fitted((dither ? DitherImage : RemapImage)(BlockAt(document, 1).data, palette, depth, 0));
            Words words = {"remap", In(), "1", Path("out.bmp"), "--palette", std::to_string(kind)};
            if (dither) words.push_back("--dither");
            EXPECT_EQ(RunCli(words).status, kExitDone);
            std::string bmp = Content("out.bmp");
            ASSERT_GT(bmp.size(), size_t{kBmpHeaderBytes});
            EXPECT_EQ(bmp.substr(0, 2), "BM");
            EXPECT_EQ(bmp.substr(kBmpHeaderBytes), BitmapBytes(fitted.Get())) << kind << dither;
        }
}

TEST_F(CliEdit, RemapNeverDithersTwoColours) {
    Words words = {"remap", Path("tiny.gif"), "1", Path("remapped.bmp"), "--palette=6"};
    EXPECT_EQ(RunCli(words).status, kExitDone);
    words[3] = Path("dithered.bmp");
    words.push_back("--dither");
    EXPECT_EQ(RunCli(words).status, kExitDone);
    EXPECT_EQ(Content("dithered.bmp"), Content("remapped.bmp"));
    EXPECT_FALSE(Content("dithered.bmp").empty());
}

TEST_F(CliEdit, WrongWordsAreToldBeforeAnythingIsRead) {
    const std::string in = Path("missing.gif"), out = Out();
    const Words cases[] = {
        {"remap", in, "1"},
        {"remap", in, "1", out},
        {"remap", in, "1", out, "--palette", "10"},
        {"remap", in, "1", out, "--palette", "web"},
        {"insert", in},
        {"insert", in, out},
        {"insert", in, out, "--at", "0"},
        {"insert", in, out, "--kind", "comment"},
        {"insert", in, out, "--at", "0", "--kind", "header"},
        {"insert", in, out, "--at", "0", "--kind", "image"},
        {"insert", in, out, "--at", "0", "--kind", "image", "--remap", "--dither", in},
        {"insert", in, out, "--at", "0", "--kind", "comment", "--keep"},
        {"insert", in, out, "--at", "0", "--kind", "comment", in},
        {"delete", in, out},
        {"set", in, out, "0"},
        {"set", in, out, "0", "width"},
        {"set", in, out, "0", "width=1", "=1"},
    };
    for (const Words& words : cases) {
        CliRun run = RunCli(words);
        std::string call = testing::PrintToString(words);
        EXPECT_EQ(run.status, kExitUsage) << call;
        EXPECT_EQ(run.err.rfind("zephyr " + words[0] + ": ", 0), 0u) << call << run.err;
        EXPECT_NE(run.err.find("(see zephyr " + words[0] + " --help)\n"), std::string::npos) << run.err;
    }
}

TEST_F(CliEdit, UnreadableDocumentsAreNotTouched) {
    Write("in.gif", "nothing like it");
    Refuse("set", {"0", "width=1"}, kExitFailed, "not a GIF file");
    Refuse("delete", {"1"}, kExitFailed, "not a GIF file");
    Refuse("insert", {"--kind", "loop"}, kExitFailed, "not a GIF file");
}

TEST_F(CliEdit, NamesGoIntoTheFileIdentity) {
    const Words commands[] = {{"set", In(), Out(), "2", "delay=3"},
                              {"delete", In(), Out(), "1"},
                              {"insert", In(), Out(), "--kind", "control", "--at", "0"}};
    for (Words words : commands) {
        words.insert(words.end(), {"--owner", "Zo\xC3\xAB", "--organisation=Kites"});
        EXPECT_EQ(RunCli(words).status, kExitDone);
        EXPECT_NE(Content("out.gif").find("Zo\xEB"), std::string::npos);
        EXPECT_NE(Content("out.gif").find("Kites"), std::string::npos);
    }
}

}  // namespace
