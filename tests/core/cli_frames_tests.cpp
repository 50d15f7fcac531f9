#include <algorithm>

#include "cli/frame_words.h"
#include "platform/faults.h"
#include "tests/support/cli_runner.h"
#include "tests/support/png_reading.h"
#include "tests/support/test_blocks.h"

namespace {

// Two frames on 4 x 3: two pixels by two at the top left, then at the bottom right, where the first one is cleared.
Bytes TwoFrames() {
    CodeBits pixels;  // 1 0 / 0 1
    for (unsigned code : {4u, 1u, 0u, 0u}) pixels.Put(code, 3);
    for (unsigned code : {1u, 5u}) pixels.Put(code, 4);
    const Bytes& packed = pixels.Packed();
    GifBytes bytes;
    bytes.Header("GIF89a", 4, 3, 0x81).Control(30, 8).SmallImage();
    bytes.Control(0, 1, 1).Add({0x2C, 2, 0, 1, 0, 2, 0, 2, 0, 0x81}).Repeat(9, 12);
    return bytes.Add({2, static_cast<int>(packed.size())}).Add(packed).Add({0, 0x3B});
}

struct CliFrames : testing::Test {
    CliFrames() { WriteAll(in, TwoFrames()); }
    std::string Out(const std::string& name) const { return folder.Path(name); }

    TempFolder folder;
    const std::string in = folder.Path("in.gif");
};

// The reds of the picture's pixels, rows from the top; "." for a transparent one.
std::string RedsOf(const std::string& path) {
    const ReadPng png(ReadAll(path));
    std::string reds;
    for (size_t i = 0; i < png.pixels.size(); ++i) {
        const auto* bytes = reinterpret_cast<const uint8_t*>(&png.pixels[i]);
        if (i && i % png.width == 0) reds += ' ';
        reds += bytes[3] ? static_cast<char>('0' + bytes[0]) : '.';
    }
    return reds;
}

}  // namespace

TEST(FrameWords, SelectionsNameFrames) {
    const std::tuple<const char*, const char*> cases[] = {
        {"3", "3"},           {"0,2", "02"},
        {"2,0,2", "02"},      {"1-3", "123"},
        {"last", "5"},        {"last-2", "3"},
        {"3-last", "345"},    {"last-2-last", "345"},
        {"last-last", "5"},   {"last-3-last-1", "234"},
        {"0,last", "05"},     {"1-last-3", "12"},
        {"0-0", "0"},         {"6", "!"},
        {"3-1", "!"},         {"", "!"},
        {"1,", "!"},          {"-1", "!"},
        {"1-", "!"},          {"last-6", "!"},
        {"last-", "!"},       {"lasting", "!"},
        {"1-2-3", "!"},       {"0x1", "!"},
        {"99999999999", "!"}, {"last-4294967295", "!"},
    };
    for (const auto& [text, expected] : cases) {
        std::vector<uint32_t> frames;
        std::string chosen = ParseFrameSelection(text, 6, &frames).empty() ? "" : "!";
        for (uint32_t frame : frames) chosen += std::to_string(frame);
        EXPECT_EQ(chosen, expected) << text;
    }
}

TEST(FrameWords, NumbersStandInNames) {
    const std::tuple<const char*, uint32_t, const char*> cases[] = {
        {"a%d.png", 7, "a7.png"}, {"%03d", 7, "007"},    {"%03d", 1234, "1234"}, {"50%%-%d", 3, "50%-3"},
        {"%d%%", 3, "3%"},        {"a.png", 5, "a.png"}, {"%099d", 1, nullptr},
    };
    for (const auto& [pattern, number, name] : cases) {
        NumberedName names;
        EXPECT_EQ(names.Parse(pattern), "") << pattern;
        EXPECT_EQ(names.For(number), name ? name : std::string(98, '0') + "1") << pattern;
    }
    for (const char* wrong : {"%", "%s", "%d%d", "%0", "%-3d", "%100d", "%n", "%99999999999999999999d", "a%"}) {
        NumberedName names;
        EXPECT_NE(names.Parse(wrong), "") << wrong;
    }
}

TEST_F(CliFrames, WritesWhatEachFrameLooksLike) {
    EXPECT_EQ(RunCli({"frames", in, Out("f%02d.png")}).status, kExitDone);
    EXPECT_EQ(folder.Names(), (std::vector<std::string>{"f00.png", "f01.png", "in.gif"}));
    EXPECT_EQ(RedsOf(Out("f00.png")), "12.. 30.. ....");
    EXPECT_EQ(RedsOf(Out("f01.png")), ".... ...9 ..9.") << "cleared, and half transparent";
}

TEST_F(CliFrames, TakesOptions) {
    const std::tuple<const char*, Words, const char*> cases[] = {
        {"one frame", {Out("o.png"), "last"}, ".... ...9 ..9."},
        {"background", {"--background", "#070000", Out("o.png"), "0"}, "1277 3077 7777"},
        {"transparent", {"--transparent", Out("o.png"), "0"}, "12.. 30.. ...."},
        {"raw", {"--raw", Out("o.png"), "1"}, ".9 9."},
        {"raw, with a background", {"--raw", "--background=#050000", Out("o.png"), "1"}, "59 95"},
        {"sheet", {"--sheet", Out("o.png")}, "12...... 30.....9 ......9."},
        {"sheet of one column", {"--sheet", Out("o.png"), "--columns", "1"}, "12.. 30.. .... .... ...9 ..9."},
        {"sheet of chosen frames", {"--sheet", Out("o.png"), "1"}, ".... ...9 ..9."},
        {"animation", {"--apng", Out("o.png")}, "12.. 30.. ...."},
        {"lowest level", {"--level", "0", Out("o.png"), "0"}, "12.. 30.. ...."},
        {"highest level", {"--level=9", Out("o.png"), "0"}, "12.. 30.. ...."},
        {"classic", {"--classic", Out("o.png"), "0"}, "12.. 30.. ...."},
    };
    for (const auto& [what, words, reds] : cases) {
        Words all = {"frames"};
        const bool outIsOption = words[0] == "--sheet" || words[0] == "--apng";
        all.insert(all.end(), words.begin(), words.end());
        const auto place = outIsOption ? all.begin() + 3 : std::find(all.begin(), all.end(), Out("o.png"));
        all.insert(place, in);
        CliRun run = RunCli(all);
        EXPECT_EQ(run.status, kExitDone) << what << run.err;
        EXPECT_EQ(run.err, "") << what;
        EXPECT_EQ(RedsOf(Out("o.png")), reds) << what;
    }
}

TEST_F(CliFrames, AnimationHasTheTimesAndChangesOfTheFrames) {
    ASSERT_EQ(RunCli({"frames", "--apng", Out("a.png"), in}).status, kExitDone);
    const std::vector<PngChunk> chunks = ChunksOf(ReadAll(Out("a.png")));
    std::vector<Bytes> controls;
    for (const PngChunk& chunk : chunks)
        if (chunk.type == "fcTL") controls.push_back(chunk.data);
    ASSERT_EQ(controls.size(), 2u);
    EXPECT_EQ(chunks[1].data, (Bytes{0, 0, 0, 2, 0, 0, 0, 1})) << "two frames, played once";
    EXPECT_EQ(controls[0][21], 30) << "hundredths";
    EXPECT_EQ(controls[1][21], 10) << "no delay is played as ten";
    EXPECT_EQ(Bytes(controls[1].begin() + 4, controls[1].begin() + 20),
              (Bytes{0, 0, 0, 4, 0, 0, 0, 3, 0, 0, 0, 0, 0, 0, 0, 0}));
}

TEST_F(CliFrames, TimesAreThoseThatBrowsersPlay) {
    EXPECT_EQ(RunCli({"frames", "--times", in}).out,
              "frame  block  control       start  length  written  rectangle\n"
              "    0      2        1           0      30       30  2x2+0+0\n"
              "    1      4        3          30      10        0  2x2+2+1\n"
              "2 frames, 40 hundredths of a second, played once\n");
    EXPECT_EQ(RunCli({"frames", "--times", "--json", in, "last"}).out,
              "{\"width\": 4, \"height\": 3, \"length\": 40, \"plays\": 1, \"frames\": [{\"frame\": 1, \"block\": 4, "
              "\"control\": 3, \"start\": 30, \"length\": 10, \"delay\": 0, \"disposal\": 0, \"transparent\": 1, "
              "\"left\": 2, \"top\": 1, \"width\": 2, \"height\": 2}]}\n");
}

TEST_F(CliFrames, RefusesWrongWords) {
    const Words cases[] = {
        {in},
        {in, Out("o.png")},  // two frames, one name
        {in, Out("%s.png")},
        {in, Out("%d.png"), "2"},
        {in, Out("%d.png"), "0", "1"},
        {"--sheet", Out("o.png"), "--apng", Out("p.png"), in},
        {"--raw", "--sheet", Out("o.png"), in},
        {"--columns", "2", in, Out("%d.png")},
        {"--columns", "0", "--sheet", Out("o.png"), in},
        {"--level", "10", in, Out("%d.png")},
        {"--background", "070000", in, Out("%d.png")},
        {"--background", "#07000g", in, Out("%d.png")},
        {"--background", "#070000", "--transparent", in, Out("%d.png")},
        {"--what", in, Out("%d.png")},
    };
    for (Words words : cases) {
        words.insert(words.begin(), "frames");
        CliRun run = RunCli(words);
        EXPECT_EQ(run.status, kExitUsage) << testing::PrintToString(words);
        EXPECT_NE(run.err.find("see zephyr frames --help"), std::string::npos) << run.err;
    }
    EXPECT_EQ(folder.Names(), std::vector<std::string>{"in.gif"});
}

TEST_F(CliFrames, SaysWhatCannotBeDone) {
    const std::tuple<const char*, Bytes, Words, const char*> cases[] = {
        {"no frames", GifBytes().Header("GIF89a", 4, 3, 0).Add({0x3B}), {}, "there are no frames in it"},
        {"no GIF", GifBytes().Text("nothing"), {}, "not a GIF file"},
        {"a screen beyond all bounds",
         GifBytes().Header("GIF89a", 65535, 65535, 0x81).SmallImage().Add({0x3B}),
         {},
         "its screen of 65535 x 65535 pixels can't be composed: 268435456 pixels are the most"},
        {"damage",
         GifBytes().Header("GIF89a", 4, 3, 0x81).SmallImage(),
         {"--strict"},
         "it is damaged, which --strict does not allow"},
        {"no pixels",
         GifBytes().Header("GIF89a", 4, 3, 0x81).ImageHead(0, 5, 0).Add({2, 2, 0x4C, 1, 0, 0x3B}),
         {"--raw"},
         "block 1 has no pixels, so there is no picture of frame 0"},
    };
    for (const auto& [what, bytes, options, message] : cases) {
        WriteAll(in, bytes);
        Words words = {"frames", in, Out("%d.png")};
        words.insert(words.end(), options.begin(), options.end());
        CliRun run = RunCli(words);
        EXPECT_EQ(run.status, kExitFailed) << what;
        EXPECT_NE(run.err.find(std::string(message) + "\n"), std::string::npos) << what << ": " << run.err;
        EXPECT_EQ(folder.Names(), std::vector<std::string>{"in.gif"}) << what;
    }
    EXPECT_EQ(RunCli({"frames", Out("none.gif"), Out("%d.png")}).status, kExitFailed);
    WriteAll(in, TwoFrames());
    EXPECT_NE(RunCli({"frames", in, Out("none/%d.png")}).err.find("there is no such folder"), std::string::npos);
}

TEST_F(CliFrames, PicturesArePngByTheirName) {
    const std::tuple<Words, bool> cases[] = {
        {{"extract", in, "2", Out("o.png")}, true},
        {{"extract", in, "2", Out("o.PNG")}, true},
        {{"extract", in, "2", Out("png")}, false},
        {{"extract", in, "2", Out("o.png.bmp")}, false},
        {{"remap", in, "2", Out("r.png"), "--palette", "2"}, true},
    };
    for (const auto& [words, isPng] : cases) {
        ASSERT_EQ(RunCli(words).status, kExitDone) << words[3];
        EXPECT_EQ(ReadAll(words[3])[0], isPng ? 0x89 : 'B') << words[3];
    }
    EXPECT_EQ(RedsOf(Out("o.png")), "12 30");
    EXPECT_EQ(ReadPng(ReadAll(Out("r.png"))).width, 2u);
    WriteAll(in, GifBytes().Header("GIF89a", 4, 3, 0x81).ImageHead(0, 5, 0).Add({2, 2, 0x4C, 1, 0, 0x3B}));
    const CliRun run = RunCli({"extract", in, "1", Out("none.png")});
    EXPECT_EQ(run.status, kExitFailed);
    EXPECT_NE(run.err.find("a PNG file has at least one pixel"), std::string::npos) << run.err;
}

TEST_F(CliFrames, FailsWhenMemoryIsShortAtAnyMoment) {
    long n = 0;
    for (bool failed = true; failed; ++n) {
        faults.onlyOne = true;
        faults.allocationsUntilFailure = n;
        CliRun run = RunCli({"frames", in, Out("o.png"), "1"});
        failed = faults.allocationsUntilFailure == Faults::kPast;
        faults = {};
        if (run.status == kExitDone && run.err.empty())
            EXPECT_EQ(RedsOf(Out("o.png")), ".... ...9 ..9.") << n;
        else
            EXPECT_NE(run.err, "") << n;
    }
    EXPECT_GT(n, 5);
}
