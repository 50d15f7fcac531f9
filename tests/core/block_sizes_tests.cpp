// What each block costs: zephyr list --sizes and what it is made of.
#include "size/block_sizes.h"

#include <filesystem>

#include "tests/support/cli_runner.h"
#include "tests/support/operations.h"

using namespace std::string_literals;

namespace {

DocumentSizes SizesOf(const BlockList& list) {
    DocumentSizes sizes;
    EXPECT_TRUE(MeasureDocument(list, &sizes));
    return sizes;
}

// "palette pixels data overhead" of a block.
std::string Shown(const BlockSizes& block) {
    return std::to_string(block.palette) + " " + std::to_string(block.pixels) + " " + std::to_string(block.data) + " " +
           std::to_string(block.overhead);
}

}  // namespace

TEST(BlockSizes, AddUpToTheLengthOfEveryFile) {
    size_t files = 0;
    for (const auto& entry : std::filesystem::directory_iterator(TEST_DATA)) {
        const Bytes bytes = ReadAll(entry.path().string());
        LoadedGif file(bytes, Manner::kWhole);
        if (file.result != kReadDone) continue;
        SCOPED_TRACE(entry.path().filename().string());
        const DocumentSizes sizes = SizesOf(file);
        EXPECT_EQ(sizes.Total(), bytes.size());
        for (uint32_t i = 0; i < file.count; ++i) EXPECT_EQ(sizes.blocks[i].Own(), file.blocks[i].source.bytes) << i;
        ++files;
    }
    EXPECT_GT(files, 100u);
}

TEST(BlockSizes, TellWhatTheBytesOfABlockAreFor) {
    const std::tuple<std::string, GifBytes, std::string> cases[] = {
        {"image", GifBytes().SmallImage(), "0 3 0 13"},
        {"its own palette", GifBytes().SmallImage(0x82), "24 3 0 13"},
        {"three sub-blocks", GifBytes().ImageHead(2, 2, 0).Add({2, 1, 0x4C, 1, 0x12, 1, 5, 0}), "0 3 0 15"},
        {"cut in its palette", GifBytes().ImageHead(2, 2, 0x80).Repeat(1, 0), "6 0 0 10"},
        {"cut in its codes", GifBytes().ImageHead(2, 2, 0).Add({2, 9, 0x4C, 0x12}), "0 2 0 12"},
        {"control", GifBytes().Control(5), "0 0 0 8"},
        {"loop", GifBytes().Loop(0), "0 0 0 19"},
        {"comment", GifBytes().Comment("abc"), "0 0 3 4"},
        {"comment of 300 bytes", GifBytes().Comment(std::string(300, 'x')), "0 0 300 5"},
        {"cut comment", GifBytes().Add({0x21, 0xFE, 9, 'a', 'b'}), "0 0 2 3"},
        {"plain text", GifBytes().Extension(1, "\x0C\0\0\0\0\1\0\1\0\1\1\0\1"s, "text"), "0 0 4 17"},
        {"application", GifBytes().Extension(0xFF, "\x0BSOMEBODY1.0", "12345"), "0 0 5 16"},
        {"unknown", GifBytes().Extension(0x77, "", "12345"), "0 0 5 4"},
    };
    for (const auto& [what, bytes, sizes] : cases) {
        LoadedGif file(Start().Add(bytes), Manner::kWhole);
        ASSERT_EQ(file.count, 2u) << what;
        EXPECT_EQ(Shown(SizesOf(file).blocks[1]), sizes) << what;
        EXPECT_EQ(SizesOf(file).Total(), Start().Add(bytes).size()) << what;
    }
}

TEST(BlockSizes, OfChangedBlocksAreThoseTheyAreWrittenWith) {
    const Bytes bytes = GifBytes(Start()).SmallImage(0x82).Add({0, 0}).Comment("abc").Add(
        {0x2C, 0, 0, 0, 0, 2, 0, 2, 0, 0, 2, 9, 0x4C});
    LoadedGif file(bytes, Manner::kWhole);
    ASSERT_EQ(file.count, 4u);
    ASSERT_TRUE(MarkChanged(&file.blocks[1]));
    ASSERT_TRUE(SetBlockText(&file.blocks[2], "x", 1));
    ASSERT_TRUE(MarkChanged(&file.blocks[2]));
    Append(&file, file.blocks[1]);  // so that something follows what the file cut off
    const DocumentSizes sizes = SizesOf(file);
    EXPECT_EQ(sizes.Total(), SavedBytes(file).size());
    EXPECT_EQ(Shown(sizes.blocks[2]), "0 0 1 4");
    EXPECT_EQ(sizes.blocks[2].stray, 2u);
    EXPECT_EQ(Shown(sizes.blocks[3]), "0 1 0 13");

    BlockList made;
    Append(&made, OfKind(kHeaderBlock));
    Append(&made, MakeImage(3, 3, 2));
    Append(&made, MakeText(kCommentBlock, "made here"));
    EXPECT_EQ(SizesOf(made).Total(), SavedBytes(made).size());
}

TEST(BlockSizes, ArePrintedAsATable) {
    TempFolder folder;
    const std::string path = folder.Path("a.gif");
    WriteAll(path,
             GifBytes(Start()).SmallImage(0x86).Add({0}).Comment("a\x1B\x7F" + std::string(2000, 'x')).Add({0x3B, 7}));
    const CliRun run = RunCli({"list", "--sizes", path});
    EXPECT_EQ(run.status, kExitDone);
    EXPECT_EQ(run.out,
              "block  bytes   share  palette  pixels   data  overhead\n"
              "    0     25    1.0%       12       -      -        13  HEADER GIF89a Screen (5 x 4)\n"
              "    1    400   16.4%      384       3      -        13  IMAGE 2 x 2, 128 colours\n"
              "    2  2,014   82.5%        -       -  2,003        11  COMMENT a\\x7f" +
                  std::string(30, 'x') +
                  "\n"
                  "           1    0.0%        -       -      -         -  between blocks\n"
                  "           1    0.0%        -       -      -         -  trailer\n"
                  "           1    0.0%        -       -      -         -  around the trailer\n"
                  "  all  2,442  100.0%      396       3  2,003        37\n");
}

TEST(BlockSizes, AreMembersInJson) {
    TempFolder folder;
    const std::string path = folder.Path("a.gif");
    WriteAll(path, GifBytes(Start()).Comment("abc").Add({0x3B, 7}));
    const std::string out = RunCli({"list", "--sizes", "--json", path}).out;
    EXPECT_NE(out.find("\"sizes\": {\"bytes\": 7, \"palette\": 0, \"pixels\": 0, \"data\": 3, \"overhead\": 4}}]"),
              std::string::npos)
        << out;
    EXPECT_NE(out.find(", \"sizes\": {\"bytes\": 34, \"before\": 0, \"stray\": 0, \"trailer\": 1, \"after\": 1}}\n"),
              std::string::npos)
        << out;
    EXPECT_EQ(RunCli({"list", "--json", path}).out.find("sizes"), std::string::npos);
}

TEST(BlockSizes, AreRefusedWithOtherForms) {
    TempFolder folder;
    const std::string path = folder.Path("a.gif"), text = folder.Path("text.gif");
    WriteAll(path, GifBytes(Start()).Add({0x3B}));
    WriteAll(text, "no picture");
    EXPECT_EQ(RunCli({"list", "--sizes", "--text", path}).status, kExitUsage);
    EXPECT_EQ(RunCli({"list", "--sizes", "--classic", path}).status, kExitUsage);
    const CliRun run = RunCli({"list", "--sizes", text});
    EXPECT_EQ(run.status, kExitFailed);
    EXPECT_EQ(run.out, "");
}
