// zephyr remap, insert, delete and set: what they write, read back, and what they refuse.
#include <cstring>

#include "gif/default_blocks.h"
#include "gif/descriptor.h"
#include "gif/gif_reader.h"
#include "gif/gif_writer.h"
#include "imaging/dither.h"
#include "imaging/remap.h"
#include "imaging/standard_palette.h"
#include "tests/support/cli_runner.h"
#include "tests/support/picture_files.h"
#include "tests/support/random_images.h"
#include "tests/support/temp_folder.h"
#include "tests/support/test_blocks.h"

namespace {

constexpr char kAllKinds[] = "1234676";  // of the document; the last one is the file-identity comment

// A folder with a document of one block of each kind and two pictures.
class CliEdit : public testing::Test {
protected:
    void SetUp() override {
        StandardPalette(web_, nullptr, kPaletteWeb);
        MakeDocument(kHasPalette | 7);
        Random random(5);
        OwnedMemory large(RandomImage(random, 40, 30, 8, {})), tiny(RandomImage(random, 2, 2, 1, {}));
        WritePicture(Path("large.gif"), large.Get(), 8);
        WritePicture(Path("tiny.gif"), tiny.Get(), 1);
    }

    std::string Path(const std::string& name) const { return folder_.Path(name); }

    CliRun Run(const std::string& command, const Words& behindOut) const {
        Words words = {command, Path("in.gif"), Path("out.gif")};
        words.insert(words.end(), behindOut.begin(), behindOut.end());
        return RunCli(words);
    }

    // The command must be done without a word; its result is read back into `list`.
    void Edit(const std::string& command, const Words& behindOut, BlockList* list) const {
        CliRun run = Run(command, behindOut);
        EXPECT_EQ(run.status, kExitDone);
        EXPECT_EQ(run.out + run.err, "");
        Load("out.gif", list);
    }

    // The command must fail with a line that ends like this, and write nothing.
    void Refuse(const std::string& command, const Words& behindOut, const std::string& message) const {
        CliRun run = Run(command, behindOut);
        EXPECT_EQ(run.status, kExitFailed);
        EXPECT_EQ(run.out, "");
        EXPECT_EQ(run.err.find('\n') + 1, run.err.size());
        EXPECT_NE(run.err.find(message + "\n"), std::string::npos) << run.err;
        EXPECT_FALSE(FileExists(Path("out.gif")));
    }

    void Load(const std::string& name, BlockList* list) const {
        DestroyBlockList(list);
        ASSERT_TRUE(CreateBlockList(list));
        ASSERT_EQ(ReadGifFile(list, Path(name).c_str()), kReadDone);
    }

    void MakeDocument(int packed) const {
        OwnedList list;
        ASSERT_TRUE(NewDocument(&list));
        Block header = BlockAt(list, 0);
        PutHeaderFields(&header, {1, 1, static_cast<uint8_t>(packed), 0, 0});
        ASSERT_TRUE(PutBlock(&list, header, 0));
        Block image = MakeImage(4, 2, 8, kHasPalette);
        memcpy(image.palette, web_, kPaletteBytes);
        Append(&list, image);
        int place = 1;
        for (uint16_t kind : {kControlBlock, kPlainTextBlock, kCommentBlock, kLoopBlock})
            ASSERT_TRUE(InsertBlock(nullptr, &list, &place, kind, nullptr, nullptr));
        ASSERT_TRUE(WriteGifFile(list, Path("in.gif").c_str()));
    }

    TempFolder folder_;
    RgbTriples web_;
};

// The bitmap's bytes from `skipped` on.
Bytes BitmapBytes(MemoryHandle image, size_t skipped = 0) {
    MemoryLock lock(image);
    auto* bitmap = lock.As<const BitmapHeader>();
    return Bytes(lock.As<const uint8_t>() + skipped, ImagePixels(bitmap) + bitmap->imageBytes);
}

TEST_F(CliEdit, SetChangesTheFieldsThatItNames) {
    const std::pair<Words, Bytes> cases[] = {
        // The screen is 4 x 2 as the image fills it.
        {{"0", "width=99", "height=99", "background=7", "sorted=yes"},
         {'G', 'I', 'F', '8', '9', 'a', 4, 0, 2, 0, 0xC7, 7}},
        {{"1", "left=258", "top=3", "interlaced=1"}, {2, 1, 3, 0, 4, 0, 2, 0, 0xC7}},
        {{"1", "interlaced=yes", "interlaced=no"}, {0, 0, 0, 0, 4, 0, 2, 0, 0x87}},
        {{"2", "delay=65535", "disposal=previous", "transparent=9", "input=yes"}, {4, 0x0F, 0xFF, 0xFF, 9, 0}},
        {{"2", "disposal=7", "transparent=9", "transparent=none"}, {4, 0x1C, 1, 0, 9, 0}},
        {{"2", "disposal=7", "disposal=nothing"}, {4, 0, 1, 0, 0, 0}},
        {{"2", "disposal=background"}, {4, 8, 1, 0, 0, 0}},
        {{"3", "left=1", "top=2", "grid-width=3", "grid-height=300", "cell-width=5", "cell-height=6", "foreground=7",
          "background=255"},
         {12, 1, 0, 2, 0, 3, 0, 44, 1, 5, 6, 7, 255}},
        {{"5", "iterations=513"}, {11, 'N', 'E', 'T', 'S', 'C', 'A', 'P', 'E', '2', '.', '0', 3, 1, 1, 2, 0}},
    };
    for (const auto& [words, descriptor] : cases) {
        SCOPED_TRACE(words[0] + " " + words[1]);
        OwnedList list;
        Edit("set", words, &list);
        EXPECT_EQ(KindsOf(list), kAllKinds);
        Block block = BlockAt(list, static_cast<uint32_t>(words[0][0] - '0'));
        EXPECT_EQ(Bytes(block.descriptor, block.descriptor + descriptor.size()), descriptor);
    }
    OwnedList list;
    Edit("set", {"0", "colour:0=#0102Ff", "colour:255=#ffffff"}, &list);
    web_[0] = {1, 2, 255};
    web_[255] = {255, 255, 255};
    EXPECT_EQ(memcmp(BlockAt(list, 0).palette, web_, kPaletteBytes), 0);
}

TEST_F(CliEdit, SetKeepsTextsInTheDocumentsEncodingAndLineEnds) {
    const std::string longest(kMaxTextBytes, 'x');
    const std::pair<std::string, std::string> cases[] = {
        {"Zo\xC3\xAB costs 5 \xE2\x82\xAC", "Zo\xEB costs 5 \x80"},
        {"a\nb\r\nc\rd\n\ne", "a\r\nb\r\nc\r\nd\r\n\r\ne"},
        {"x=y", "x=y"},
        {longest, longest},
    };
    OwnedList list;
    for (const auto& [given, kept] : cases)
        for (uint32_t index : {3u, 4u}) {
            Edit("set", {std::to_string(index), "text=" + given}, &list);
            EXPECT_EQ(TextOf(BlockAt(list, index)), kept);
        }
    Edit("set", {"3", "text="}, &list);
    EXPECT_EQ(KindsOf(list), "123676") << "a block with an empty text is left out";
}

TEST_F(CliEdit, SetRefusesWhatTheBlockCanNotTake) {
    const std::string tooLong(kMaxTextBytes, 'x');
    const std::pair<Words, const char*> cases[] = {
        {{"0", "width=65536"}, "block 0: width wants a whole number of 0 to 65535"},
        {{"0", "sorted=maybe"}, "block 0: sorted wants yes or no"},
        {{"0", "colour:256=#000000"}, "block 0: colour:256 wants a whole number of 0 to 255 behind its colon"},
        {{"0", "colour=#000000"},
         "block 0: HEADER blocks have no field colour, but width, height, background, sorted, colour:"},
        {{"0", "colour:1=#12345"}, "block 0: colour:1 wants a colour like #ff8000"},
        {{"0", "colour:1=#-12345"}, "a colour like #ff8000"},
        {{"0", "colour:1=1234567"}, "a colour like #ff8000"},
        {{"1", "delay=1"}, "block 1: IMAGE blocks have no field delay, but left, top, interlaced"},
        {{"2", "delay=1 "}, "block 2: delay wants a whole number of 0 to 65535"},
        {{"2", "disposal=8"}, "nothing, leave, background, previous or a whole number of 0 to 7"},
        {{"2", "transparent=256"}, "none or a whole number of 0 to 255"},
        {{"3", "cell-width=256"}, "a whole number of 0 to 255"},
        {{"4", "text=good", "text=" + tooLong + "\n"}, "block 4: text wants at most 32767 characters"},
        {{"4", "text=good", "text=\xE6\x97\xA5"}, "only characters that Windows-1252 has"},
        {{"5", "iterations=1e3"}, "block 5: iterations wants a whole number of 0 to 65535"},
        {{"7", "delay=1"}, "no block 7; they are numbered 0 to 6"},
    };
    for (const auto& [words, message] : cases) Refuse("set", words, message);
    MakeDocument(7);
    Refuse("set", {"0", "colour:1=#123456"}, "colour:1 wants a global palette, which this file lacks");
}

TEST_F(CliEdit, DeleteAndInsertCountTheBlocksOfTheOldDocument) {
    const struct {
        const char* command;
        Words words;
        const char* kinds;
    } cases[] = {
        {"delete", {"2", "4"}, "12476"},
        {"delete", {"5", "1", "3"}, "1366"},
        {"delete", {"3", "3"}, "123676"},
        {"insert", {"--kind", "control", "--at", "0"}, "13234676"},
        {"insert", {"--kind", "comment", "--at", "4"}, "12346676"},
        {"insert", {"--kind", "plaintext", "--at", "1"}, "12434676"},
        {"insert", {"--kind=image", "--at=2", "--remap", Path("large.gif"), Path("tiny.gif")}, "123224676"},
        {"set", {"2", "delay=3"}, kAllKinds},
        {"delete", {"1", "2", "3", "4", "5"}, "16"},
    };
    OwnedList list;
    for (const auto& c : cases) {
        Words words = c.words;
        words.insert(words.end(), {"--owner", "Zo\xC3\xAB", "--organisation=Kites"});
        Edit(c.command, words, &list);
        EXPECT_EQ(KindsOf(list), c.kinds + std::string("6"));  // and the comment with the new names
        EXPECT_EQ(TextOf(BlockAt(list, list.count - 1)), "FILE IDENTITY\r\nCreated or modified by\r\nZo\xEB\r\nKites");
        if (c.kinds == std::string("123224676")) {
            EXPECT_EQ(GetImageFields(BlockAt(list, 3)).width, 40) << "the files in their order";
        }
    }
    std::remove(Path("in.gif").c_str());
    std::rename(Path("out.gif").c_str(), Path("in.gif").c_str());
    for (const Words& words : {Words{"--kind", "loop", "--at", "1"}, Words{"--kind", "loop"}}) {
        std::remove(Path("out.gif").c_str());
        Edit("insert", words, &list);
        EXPECT_EQ(KindsOf(list), "1766") << "right behind the header";
    }
}

TEST_F(CliEdit, DeleteKeepsTheHeader) {
    Refuse("delete", {"1", "0"}, "The header block can't be copied or deleted.");
    Refuse("delete", {"1", "7"}, "no block 7; they are numbered 0 to 6");
}

TEST_F(CliEdit, InsertFitsColoursAsItIsTold) {
    OwnedList large, list;
    Load("large.gif", &large);
    MemoryHandle own = BlockAt(large, 1).data;
    OwnedMemory remapped(RemapImage(own, web_, 8, 0)), dithered(DitherImage(own, web_, 8, 0));
    const std::pair<const char*, MemoryHandle> cases[] = {
        {"--remap", remapped.Get()},
        {"--dither", dithered.Get()},
        {"--keep", own}};  // its pixels; the colours they stand for become the document's
    constexpr size_t kPixels = sizeof(BitmapHeader) + 256 * sizeof(RgbQuad);
    for (const auto& [option, expected] : cases) {
        Edit("insert", {"--kind", "image", "--at", "0", option, Path("large.gif")}, &list);
        EXPECT_EQ(BitmapBytes(BlockAt(list, 1).data, kPixels), BitmapBytes(expected, kPixels)) << option;
        EXPECT_EQ(GetImageFields(BlockAt(list, 1)).packed, 7);
    }
}

TEST_F(CliEdit, InsertRefusesWhatItCanNotTake) {
    Bytes corrupt = ReadAll(Path("large.gif"));
    constexpr size_t kFirstCode = 13 + kPaletteBytes + 12;
    corrupt[kFirstCode] = corrupt[kFirstCode + 1] = 0xFF;  // stands for nothing
    WriteAll(Path("corrupt.gif"), corrupt);
    const std::pair<const char*, const char*> images[] = {
        {"missing.gif", "missing.gif: can't be opened: there is no such file"},
        {"corrupt.gif", "corrupt.gif: no readable GIF picture"},
        {"large.gif", "large.gif: its colours are not the document's: give --remap, --dither or --keep"},
    };
    for (const auto& [name, message] : images)
        Refuse("insert", {"--kind", "image", "--at", "0", Path("in.gif"), Path(name)}, message);
    Refuse("insert", {"--kind", "loop"},
           "in.gif: A LOOP block already exists in this image. Delete it before inserting a new one.");
    Refuse("insert", {"--kind", "control", "--at", "-1"}, "in.gif: no block -1; they are numbered 0 to 6");
    MakeDocument(7);
    Refuse("insert", {"--kind", "plaintext", "--at", "0"},
           "in.gif: there is no global palette, whose colours a plain text block needs");
}

TEST_F(CliEdit, RemapWritesTheImageInTheStandardPalette) {
    constexpr size_t kBmpHeaderBytes = 14;
    OwnedList large, tiny;
    Load("large.gif", &large);
    Load("tiny.gif", &tiny);
    auto expect = [&](const char* file, const OwnedMemory& fitted, const Words& options) {
        Words words = {"remap", Path(file), "1", Path("out.bmp"), "--palette"};
        words.insert(words.end(), options.begin(), options.end());
        EXPECT_EQ(RunCli(words).status, kExitDone);
        Bytes bmp = ReadAll(Path("out.bmp"));
        ASSERT_GT(bmp.size(), kBmpHeaderBytes);
        EXPECT_EQ(Bytes(bmp.begin() + kBmpHeaderBytes, bmp.end()), BitmapBytes(fitted.Get())) << options[0];
    };
    for (int kind = 0; kind <= 9; ++kind) {
        RgbTriples palette;
        int depth;
        StandardPalette(palette, &depth, kind);
        MemoryHandle image = BlockAt(large, 1).data;
        expect("large.gif", OwnedMemory(RemapImage(image, palette, depth, 0)), {std::to_string(kind)});
        expect("large.gif", OwnedMemory(DitherImage(image, palette, depth, 0)), {std::to_string(kind), "--dither"});
    }
    // A picture of two colours is never dithered.
    expect("tiny.gif", OwnedMemory(RemapImage(BlockAt(tiny, 1).data, web_, 8, 0)), {"6", "--dither"});
}

}  // namespace
