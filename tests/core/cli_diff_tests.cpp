// zephyr diff, and the list that others compare.
#include <filesystem>

#include "editing/block_values.h"
#include "editing/diff.h"
#include "platform/checksum.h"
#include "tests/support/cli_runner.h"
#include "tests/support/test_blocks.h"

using namespace std::string_literals;

namespace {

// A picture of one colour: `pixels` pixels in a row.
GifBytes Stripe(int pixels, int colour, int left = 0) {
    GifBytes image = GifBytes().ImageHead(pixels, 1, 0);
    image[1] = static_cast<uint8_t>(left);
    CodeBits codes;
    for (int i = 0; i < pixels; ++i) {
        codes.Put(4, 3);  // cleared before every pixel, so that codes stay short
        codes.Put(static_cast<unsigned>(colour), 3);
    }
    codes.Put(5, 3);
    image.Add({2});
    return image.SubBlocks({reinterpret_cast<const char*>(codes.Packed().data()), codes.Packed().size()});
}

GifBytes Gif(std::initializer_list<Bytes> blocks) {
    GifBytes file = GifBytes().Header("GIF89a", 9, 9, 0x81);
    for (const Bytes& block : blocks) file.Add(block);
    return file.Add({0x3B});
}

class CliDiff : public testing::Test {
protected:
    CliRun Diff(const Bytes& old, const Bytes& fresh, const Words& options = {}) {
        WriteAll(old_, old);
        WriteAll(new_, fresh);
        Words words = {"diff", old_, new_};
        words.insert(words.end(), options.begin(), options.end());
        return RunCli(words);
    }
    std::string Text(const Bytes& bytes) {
        WriteAll(old_, bytes);
        return RunCli({"list", "--text", old_}).out;
    }

    TempFolder folder_;
    std::string old_ = folder_.Path("old.gif"), new_ = folder_.Path("new.gif");
};

}  // namespace

TEST_F(CliDiff, TellsOfEachBlockWhatHappenedToIt) {
    const GifBytes a = Stripe(3, 1), b = Stripe(4, 2), c = Stripe(5, 3), text = GifBytes().Comment("Ch\xE4r");
    const GifBytes plain = GifBytes().Extension(1, "\x0C" + std::string(12, '\1'), "plain");
    GifBytes headerOnly = GifBytes().Header("GIF87a", 8, 9, 0xB0), recoloured = Gif({a});
    recoloured[16] = 200;
    GifBytes apart = GifBytes().Header("GIF89a", 9, 9, 0x81).Comment("one"), joined = apart;
    apart.Extension(0xCE, "", "abc").Add({0x3B});
    joined.Add({0x21, 0xCE, 1, 'a', 2, 'b', 'c', 0, 0x3B});
    const struct {
        const char* name;
        Bytes old, fresh;
        std::string printed;
    } cases[] = {
        {"nothing", Gif({a, text}), Gif({a, text}), ""},
        {"added", Gif({a, b}), Gif({a, text, b}), "- -> 2  added: COMMENT Ch\xC3\xA4r\n"},
        {"taken out", Gif({a, text, b}), Gif({a, b}), "2 -> -  taken out: COMMENT Ch\xC3\xA4r\n"},
        {"one of two alike", Gif({a, a, b}), Gif({a, b}), "2 -> -  taken out: IMAGE 3 x 1, 4 colours\n"},
        {"in front and behind", Gif({b}), Gif({a, b, c}),
         "- -> 1  added: IMAGE 3 x 1, 4 colours\n- -> 3  added: IMAGE 5 x 1, 4 colours\n"},
        {"exchanged for another kind", Gif({a, text, b}), Gif({a, GifBytes().Loop(1), b}),
         "2 -> -  taken out: COMMENT Ch\xC3\xA4r\n- -> 2  added: LOOP (1 iterations)\n"},
        {"moved", Gif({a, b, c, text}), Gif({b, c, text, a}), "1 -> 4  moved: IMAGE 3 x 1, 4 colours\n"},
        {"moved among others that are nearly alike",
         Gif({GifBytes().Comment("1"), GifBytes().Comment("2"), GifBytes().Comment("3")}),
         Gif({GifBytes().Comment("2"), GifBytes().Comment("3"), GifBytes().Comment("1")}),
         "1 -> 3  moved: COMMENT 1\n"},
        {"a frame with its control",
         Gif({GifBytes().Control(1), a, GifBytes().Control(2), b, GifBytes().Control(3), c}),
         Gif({GifBytes().Control(2), b, GifBytes().Control(3), c, GifBytes().Control(1), a}),
         "1 -> 5  moved: CONTROL (delay 1 1/100ths of a second)\n2 -> 6  moved: IMAGE 3 x 1, 4 colours\n"},
        {"moved and changed", Gif({a, b, c}), Gif({b, c, Stripe(3, 1, 6)}),
         "1 -> 3  moved, changed: IMAGE 3 x 1, 4 colours\n        left: 0 -> 6\n"},
        {"controls that exchange delays are changed", Gif({GifBytes().Control(1), a, GifBytes().Control(2), b}),
         Gif({GifBytes().Control(2), a, GifBytes().Control(1), b}),
         "1 -> 1  changed: CONTROL (delay 2 1/100ths of a second)\n        delay: 1 -> 2\n"
         "3 -> 3  changed: CONTROL (delay 1 1/100ths of a second)\n        delay: 2 -> 1\n"},
        {"all fields of a control", Gif({GifBytes().Control(1, 0x05, 7)}), Gif({GifBytes().Control(1, 0xEA, 7)}),
         "1 -> 1  changed: CONTROL (delay 1 1/100ths of a second)\n        disposal: leave -> background\n"
         "        transparent: 7 -> none (7)\n        input: no -> yes\n        flags: 0x00 -> 0xe0\n"},
        {"header", Gif({}), headerOnly.Add({0x3B}),
         "0 -> 0  changed: HEADER GIF87a Screen (8 x 9)\n        version: GIF89a -> GIF87a\n"s
         "        width: 9 -> 8\n        flags: 0x00 -> 0x30\n        palette: 4 colours -> 2 colours\n"},
        {"a colour", Gif({a}), recoloured,
         "0 -> 0  changed: HEADER GIF89a Screen (9 x 9)\n        palette: 1 of 4 colours differs\n"},
        {"pixels", Gif({a, text}), Gif({Stripe(3, 2), text}),
         "1 -> 1  changed: IMAGE 3 x 1, 4 colours\n        pixels: 3 of 3 pixels differ\n"},
        {"pictures that can't be decoded", Gif({GifBytes().ImageHead(3, 1, 0).Add({99, 1, 7, 0})}),
         Gif({GifBytes().ImageHead(3, 1, 0).Add({99, 1, 8, 0})}),
         "1 -> 1  changed: IMAGE 3 x 1, 4 colours\n        data: 1 of 4 bytes differs\n"},
        {"another size", Gif({a, text}), Gif({b, text}),
         "1 -> 1  changed: IMAGE 4 x 1, 4 colours\n        width: 3 -> 4\n        pixels: 3 x 1 -> 4 x 1\n"},
        {"the likeliest partner", Gif({text, a, b}), Gif({text, Stripe(4, 3)}),
         "2 -> -  taken out: IMAGE 3 x 1, 4 colours\n3 -> 2  changed: IMAGE 4 x 1, 4 colours\n"
         "        pixels: 4 of 4 pixels differ\n"},
        {"texts", Gif({GifBytes().Comment(std::string(90, 'x') + "old\n" + std::string(90, 'y')), plain}),
         Gif({GifBytes().Comment(std::string(90, 'x') + "new\n" + std::string(90, 'y')), plain}),
         "1 -> 1  changed: COMMENT " + std::string(32, 'x') + "\n        text: ...\"" + std::string(12, 'x') +
             "old\\x0a" + std::string(44, 'y') + "\"... -> ...\"" + std::string(12, 'x') + "new\\x0a" +
             std::string(44, 'y') + "\"...\n"},
        {"data",
         Gif({GifBytes().Extension(0xFF,
                                   "\x0B"
                                   "ABCDEFGH123",
                                   "old")}),
         Gif({GifBytes().Extension(0xFF,
                                   "\x0B"
                                   "ABCDEFGH124",
                                   "odd")}),
         "1 -> 1  changed: APPLICATION-DEFINED (Type: ABCDEFGH)\n"
         "        identifier: \"ABCDEFGH123\" -> \"ABCDEFGH124\"\n        data: 1 of 3 bytes differs\n"},
        {"other bytes", apart, joined, "2 -> 2  encoded differently: UNKNOWN TYPE\n        bytes: 7 -> 8\n"},
        {"stray bytes", Gif({a, {0}, text}), Gif({a, text}),
         "2 -> 2  changed: COMMENT Ch\xC3\xA4r\n        stray: 1 byte -> none\n"},
        {"bytes around", GifBytes().Repeat('p', 128).Add(Gif({a})), Gif({a, {0x3B, 1}}),
         "before the signature: 128 bytes -> none\nbehind the last block: 1 byte -> 3 bytes\n"},
    };
    for (const auto& [name, old, fresh, printed] : cases) {
        SCOPED_TRACE(name);
        const CliRun run = Diff(old, fresh);
        EXPECT_EQ(run.out, printed);
        EXPECT_EQ(run.err, "");
        EXPECT_EQ(run.status, printed.empty() ? kExitNothing : kExitFound);
    }
}

TEST_F(CliDiff, WhatCantBeComparedIsTrouble) {
    const Bytes fine = Gif({Stripe(3, 1)});
    const std::string nowhere = folder_.Path("nowhere.gif");
    ASSERT_EQ(Diff(fine, GifBytes().Text("no picture of this kind")).status, kExitTrouble);
    const struct {
        Words words;
        int status;
        std::string told;
    } cases[] = {
        {{old_, new_}, kExitTrouble, "zephyr: " + new_ + ": not a GIF file\n"},
        {{nowhere, old_}, kExitTrouble, "zephyr: " + nowhere + ": can't be opened: there is no such file\n"},
        {{old_}, kExitTrouble, "zephyr diff: give OLD and NEW (see zephyr diff --help)\n"},
        {{old_, old_, old_}, kExitTrouble, "zephyr diff: give OLD and NEW (see zephyr diff --help)\n"},
        {{old_, old_, "--strict"}, kExitTrouble, "zephyr diff: unknown option --strict (see zephyr diff --help)\n"},
        {{old_, old_}, kExitNothing, ""},
    };
    for (auto [words, status, told] : cases) {
        words.insert(words.begin(), "diff");
        const CliRun run = RunCli(words);
        EXPECT_EQ(run.status, status);
        EXPECT_EQ(run.out, "");
        EXPECT_EQ(run.err, told);
    }
}

TEST_F(CliDiff, ClassicComparesWhatTheEditorReads) {
    const GifBytes foreign = GifBytes().Extension(0xFF,
                                                  "\x0B"
                                                  "ICCRGBG1012",
                                                  "x");
    const Bytes old = Gif({Stripe(3, 1), GifBytes().Comment("one"), foreign, Stripe(4, 1)});
    const Bytes fresh = Gif({Stripe(3, 1), GifBytes().Add({0x21, 0xFE, 1, 'o', 2, 'n', 'e', 0}), foreign});
    EXPECT_EQ(Diff(old, fresh, {"--classic"}).out, "");
    EXPECT_EQ(Diff(old, fresh).out,
              "2 -> 2  encoded differently: COMMENT one\n        bytes: 7 -> 8\n"
              "4 -> -  taken out: IMAGE 4 x 1, 4 colours\n");
}

TEST_F(CliDiff, JsonHasAllOfIt) {
    const GifBytes text = GifBytes().Comment("\"");
    const Bytes old = Gif({text, Stripe(3, 1), GifBytes().Control(4)}),
                fresh = Gif({Stripe(3, 2), GifBytes().Control(5), {0x3B, 7}});
    EXPECT_EQ(Diff(old, old, {"--json"}).out, "{\"same\": true, \"blocks\": [], \"around\": []}\n");
    EXPECT_EQ(Diff(old, fresh, {"--json"}).out,
              R"({"same": false, "blocks": [{"before": 1, "after": null, "kindName": "COMMENT", "line": "COMMENT \"", )"
              R"("differences": ["taken out"], "fields": [], "bytesBefore": 5, "bytesAfter": 0}, )"
              R"({"before": 2, "after": 1, "kindName": "IMAGE", "line": "IMAGE 3 x 1, 4 colours", )"
              R"("differences": ["changed"], "fields": [{"field": "pixels", "before": "3 x 1", "after": "3 x 1", )"
              R"("differing": 3, "total": 3}], "bytesBefore": 16, "bytesAfter": 16}, )"
              R"~({"before": 3, "after": 2, "kindName": "CONTROL", "line": "CONTROL (delay 5 1/100ths of a second)", )~"
              R"("differences": ["changed"], "fields": [{"field": "delay", "before": "4", "after": "5"}], )"
              R"("bytesBefore": 8, "bytesAfter": 8}], )"
              R"("around": [{"field": "after", "before": "1 byte", "after": "3 bytes"}]})"
              "\n");
}

// Whatever is in the files: no byte changes unseen, every block is accounted for, and what is in its place is in order.
TEST(Diff, NoByteOfAFileChangesUnseen) {
    size_t compared = 0;
    for (const auto& entry : std::filesystem::directory_iterator(TEST_DATA)) {
        SCOPED_TRACE(entry.path().string());
        Bytes bytes = ReadAll(entry.path().string());
        const LoadedGif old(bytes, Manner::kWhole);
        if (old.result != kReadDone) continue;
        DocumentDifferences found;
        ASSERT_TRUE(CompareDocuments(old, LoadedGif(bytes, Manner::kWhole), &found));
        EXPECT_TRUE(found.AreNone());
        for (size_t i = 0; i < 8; ++i) {
            const size_t at = (bytes.size() - 1) * i / 7;
            bytes[at] ^= 0x15;
            const LoadedGif fresh(bytes, Manner::kWhole);
            bytes[at] ^= 0x15;
            if (fresh.result != kReadDone) continue;
            ++compared;
            ASSERT_TRUE(CompareDocuments(old, fresh, &found));
            EXPECT_FALSE(found.AreNone()) << at;
            int64_t balance = int64_t{fresh.count} - old.count, last = -1;
            for (const BlockDifference& block : found.blocks) {
                balance += (block.after == BlockDifference::kNone) - (block.before == BlockDifference::kNone);
                if (block.isMoved || block.before == BlockDifference::kNone) continue;
                EXPECT_GT(block.before, last);
                last = block.before;
            }
            EXPECT_EQ(balance, 0);
        }
    }
    EXPECT_GT(compared, 300u);
}

TEST_F(CliDiff, TheTextOfAListShowsEachChangeAndNoPlaces) {
    const Bytes start = Gif({GifBytes().Control(1), Stripe(3, 1),
                             GifBytes().Comment("a\r\n\x1B"
                                                "b\rc"),
                             GifBytes().Loop(2)});
    const std::string header =
        "HEADER version=GIF89a width=9 height=9 background=0 aspect=0 sorted=no flags=0x00 palette=4:af8036a0\n";
    const std::string control = "CONTROL delay=1 disposal=nothing transparent=none input=no flags=0x00\n";
    const std::string image =
        "IMAGE left=0 top=0 width=3 height=1 interlaced=no flags=0x00 palette=none pixels=909fb2f2\n";
    EXPECT_EQ(Text(start),
              header + control + image + "COMMENT text=7:ebdd122f\n    a\n    \\x1bb\n    c\nLOOP iterations=2\n");
    EXPECT_EQ(Text(Gif({GifBytes().Control(1), Stripe(3, 1)})), header + control + image);
    const struct {
        Bytes bytes;
        std::string line;  // behind those of the header
    } cases[] = {
        {Gif({{0x21, 0xCE, 1, 'x', 0}}), "UNKNOWN TYPE label=0xce data=1:8cdc1683\n"},
        {Gif({{0, 0x21, 0xCE, 0}}), "UNKNOWN TYPE label=0xce data=0:00000000 stray=1:d202ef8d\n"},
        {Gif({GifBytes().Extension(0xFF, "\x0BXMP DataXM\x80", "x")}),
         "APPLICATION-DEFINED identifier=\"XMP DataXM\xE2\x82\xAC\" data=1:8cdc1683\n"},
        {Gif({GifBytes().Extension(1, "\x0C" + std::string(12, '\1'), "plain")}),
         "PLAIN TEXT left=257 top=257 foreground=1 background=1 grid-width=257 grid-height=257 cell-width=1 "
         "cell-height=1 text=5:192062cf\n    plain\n"},
        {Gif({{0x3B, 'x'}}), "AFTER data=3:8192c9b9\n"},
    };
    for (const auto& [bytes, line] : cases) EXPECT_EQ(Text(bytes), header + line);
    EXPECT_EQ(RunCli({"list", "--text", "--json", old_}).status, kExitUsage);
}

TEST_F(CliDiff, AnotherKindOfFileHasItsTextToo) {
    WriteAll(old_, "123456789"s);
    CliRun run = RunCli({"list", "--text", old_});
    EXPECT_EQ(run.out, "NO GIF FILE data=9:cbf43926\n");  // the known check value of this sum
    EXPECT_EQ(run.err, "zephyr: " + old_ + ": not a GIF file\n");
    EXPECT_EQ(run.status, kExitDone);
    EXPECT_EQ(RunCli({"list", "--text", "--strict", old_}).status, kExitFailed);
    EXPECT_EQ(RunCli({"list", "--text", folder_.Path("nowhere")}).status, kExitFailed);
}

// Pixels count as they are shown, whatever the bits that hold them and the order of rows in the file.
TEST(SumOfPixels, IsThatOfTheIndexesRowByRow) {
    const std::vector<uint8_t> rows = {1, 0, 1, 0, 1, 1};
    for (int depth : {1, 2, 8}) {
        Block image = MakeImage(3, 2, depth);
        ImageWriteLock bitmap(&image.data);
        for (int i = 0; i < 6; ++i) SetImagePixel(bitmap, i % 3, i / 3, rows[static_cast<size_t>(i)]);
        EXPECT_EQ(SumOfPixels(image), Crc32(rows)) << depth;
    }
    EXPECT_EQ(SumOfPixels(OfKind(kImageBlock)), std::nullopt);
}
