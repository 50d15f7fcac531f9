#include "animation/flashes.h"
#include "tests/support/cli_runner.h"
#include "tests/support/test_blocks.h"

namespace {

constexpr RgbTriple kBlack = {0, 0, 0}, kWhite = {255, 255, 255}, kRed = {255, 0, 0}, kGreen = {0, 255, 0};

// Images of 10 x 4 in one colour each, `width` columns of them, on a screen of 10 x 4; delays in hundredths.
struct Blinker : BlockList {
    Blinker() {
        (void)CreateBlockList(this);
        Append(this, *MakeHeaderBlock(this));
        PutHeaderFields(&blocks[0], {10, 4, 0, 0, 0});
    }
    Blinker& Show(RgbTriple colour, int delay, int width = 10) {
        Block control = OfKind(kControlBlock);
        PutControlFields(&control, {0, static_cast<uint16_t>(delay), 0});
        Append(this, control);
        Block image = MakeImage(width, 4, 1, kHasPalette);
        (void)image.palette.SetEntry(0, colour);
        Append(this, image);
        return *this;
    }
    Blinker& Blink(int times, RgbTriple a, RgbTriple b, int delay, int width = 10) {
        for (int i = 0; i < times; ++i) Show(a, delay, width).Show(b, delay, width);
        return *this;
    }
    Blinker& Loop(int iterations) {
        Block loop = OfKind(kLoopBlock);
        PutLoopIterations(&loop, static_cast<uint16_t>(iterations));
        Append(this, loop);
        return *this;
    }
};

// "general 0-9: 5" for each range, in one line.
std::string FlashesOf(const BlockList& list) {
    Animation animation;
    std::vector<Flashing> found;
    EXPECT_TRUE(animation.Open(list, Texts::kDrawn));
    EXPECT_TRUE(FindFlashes(animation, &found));
    std::string text;
    for (const Flashing& flashing : found)
        text += std::string(text.empty() ? "" : "; ") + (flashing.kind == FlashKind::kRed ? "red " : "general ") +
                std::to_string(flashing.firstFrame) + "-" + std::to_string(flashing.lastFrame) + ": " +
                std::to_string(flashing.flashes);
    return text;
}

RgbTriple Grey(int level) {
    const auto part = static_cast<uint8_t>(level);
    return {part, part, part};
}

}  // namespace

TEST(Flashes, MoreThanThreeInASecondOverMoreThanAQuarter) {
    const std::tuple<const char*, std::string, const char*> cases[] = {
        {"five in a second", FlashesOf(Blinker().Blink(6, kBlack, kWhite, 10)), "general 1-11: 5"},
        {"three in a second", FlashesOf(Blinker().Blink(20, kBlack, kWhite, 17)), ""},
        {"just four", FlashesOf(Blinker().Blink(20, kBlack, kWhite, 14)), "general 1-39: 4"},
        {"at a delay that browsers change", FlashesOf(Blinker().Blink(20, kBlack, kWhite, 0)), "general 1-39: 5"},
        {"few, once", FlashesOf(Blinker().Blink(3, kBlack, kWhite, 5)), ""},
        {"few, for ever", FlashesOf(Blinker().Loop(0).Blink(1, kBlack, kWhite, 5)), "general 0-1: 10"},
        {"few, repeated once", FlashesOf(Blinker().Loop(1).Blink(2, kBlack, kWhite, 5)), ""},
        {"a quarter of the picture and no more", FlashesOf(Blinker().Show(kWhite, 10).Blink(9, kBlack, kWhite, 10, 2)),
         ""},
        {"more than a quarter", FlashesOf(Blinker().Show(kWhite, 10).Blink(9, kBlack, kWhite, 10, 3)),
         "general 1-18: 5"},
        {"both light", FlashesOf(Blinker().Blink(9, Grey(235), kWhite, 10)), ""},
        {"the darker just dark enough", FlashesOf(Blinker().Blink(9, Grey(229), kWhite, 10)), "general 1-17: 5"},
        {"too little change", FlashesOf(Blinker().Blink(9, Grey(100), Grey(120), 10)), ""},
        {"one way only",
         FlashesOf(Blinker()
                       .Show(Grey(0), 5)
                       .Show(Grey(90), 5)
                       .Show(Grey(140), 5)
                       .Show(Grey(180), 5)
                       .Show(Grey(210), 5)
                       .Show(Grey(230), 5)
                       .Show(Grey(245), 5)
                       .Show(kWhite, 5)),
         ""},
        {"red from black", FlashesOf(Blinker().Blink(9, kBlack, kRed, 10)), "general 1-17: 5; red 1-17: 5"},
        {"dark red", FlashesOf(Blinker().Blink(9, kBlack, {160, 0, 0}, 10)), "red 1-17: 5"},
        {"green", FlashesOf(Blinker().Blink(9, kBlack, kGreen, 10)), "general 1-17: 5"},
        {"calm, then flashing", FlashesOf(Blinker().Blink(9, kBlack, kWhite, 50).Blink(9, kBlack, kWhite, 10)),
         "general 18-35: 5"},
        {"one image", FlashesOf(Blinker().Loop(0).Show(kBlack, 5)), ""},
    };
    for (const auto& [what, found, expected] : cases) EXPECT_EQ(found, expected) << what;
}

TEST(Flashes, TellsHowFarItIsAndStops) {
    Blinker blinker;
    blinker.Blink(6, kBlack, kWhite, 10).Loop(0);
    Animation animation;
    ASSERT_TRUE(animation.Open(blinker, Texts::kDrawn));
    std::vector<Flashing> found;
    size_t last = 0, calls = 0;
    EXPECT_TRUE(FindFlashes(animation, &found, [&](size_t done, size_t count) {
        EXPECT_GE(done, last);
        EXPECT_LE(done, count);
        last = done;
        return ++calls > 0;
    }));
    EXPECT_GT(last, 800u) << "of 1000";
    calls = 0;
    EXPECT_FALSE(FindFlashes(animation, &found, [&](size_t, size_t) { return ++calls < 3; }));
    EXPECT_EQ(calls, 3u);
}

TEST(Flashes, SeesThroughAPictureLargerThanItsSamples) {
    Blinker blinker;
    PutHeaderFields(&blinker.blocks[0], {5000, 4000, 0, 0, 0});
    for (int i = 0; i < 12; ++i) {
        blinker.Show(i % 2 ? kWhite : kBlack, 10);
        Block& image = blinker.blocks[blinker.count - 1];
        const Palette colours = image.palette;
        image = MakeImage(5000, 1100, 1, kHasPalette);
        image.palette = colours;
    }
    EXPECT_EQ(FlashesOf(blinker), "general 1-11: 5");
}

namespace {

GifBytes Screen(int width, int height) {
    return GifBytes().Header("GIF89a", width, height, 0x81);
}

}  // namespace

TEST(CliCheck, FindsWhatSurprises) {
    const Bytes control = GifBytes().Control(5);
    struct {
        const char* what;
        Bytes bytes;
        const char* found;  // a line, and the command below it
    } const cases[] = {
        {"delay", Start().Control(1).SmallImage().Add(control).SmallImage().Add({0x3B}),
         "block 1: a delay of 1; Chrome, Edge, Firefox and Safari show the frame for 10 hundredths of a second, other "
         "players as briefly as they can\n    zephyr set FILE OUT 1 delay=10\n"},
        {"no control", Start().Add(control).SmallImage().SmallImage().Add({0x3B}), "block 3: no delay; Chrome"},
        {"place", Screen(2, 1).SmallImage().Add({0x3B}), "    zephyr set FILE OUT 0 width=2 height=2\n"},
        {"screen", Screen(0, 0).SmallImage().Add({0x3B}), "    zephyr set FILE OUT 0 width=2 height=2\n"},
        {"aspect", GifBytes().Text("GIF89a").Add({2, 0, 2, 0, 0x80, 0, 49, 0, 0, 0, 1, 1, 1}).SmallImage().Add({0x3B}),
         "block 0: pixels are not square"},
        {"no image", Start().Add({0x3B}), "FILE: there is no image; players show nothing\n"},
        {"no pixels", Start().ImageHead(0, 5, 0).Add({2, 2, 0x4C, 1, 0, 0x3B}),
         "block 1: the image has no pixels; some players stop here or refuse the file\n    zephyr delete FILE OUT 1\n"},
        {"disposal 4", Start().Control(5, 16).SmallImage().Add({0x3B}),
         "    zephyr set FILE OUT 1 disposal=previous\n"},
        {"disposal 6", Start().Control(5, 24).SmallImage().Add({0x3B}), "    zephyr set FILE OUT 1 disposal=leave\n"},
        {"disposal 3 first", Start().Control(5, 12).SmallImage().Add(control).SmallImage().Add({0x3B}),
         "    zephyr set FILE OUT 1 disposal=background\n"},
        {"flicker", Start().Control(5, 8).SmallImage().Add(control).SmallImage().Add({0x3B}),
         "block 1: the frame is cleared although the next one covers it; players that show the clearing flicker\n"
         "    zephyr set FILE OUT 1 disposal=leave\n"},
        {"two controls", Start().Add(control).Add(control).SmallImage().Add({0x3B}),
         "block 1: no image follows before the next control; players do not heed it\n    zephyr delete FILE OUT 1\n"},
        {"input", Start().Control(5, 2).SmallImage().Add({0x3B}), "    zephyr set FILE OUT 1 input=no\n"},
        {"loop count", Start().Loop(3).Add(control).SmallImage().Add(control).SmallImage().Add({0x3B}),
         "block 1: a loop count of 3; browsers play the frames 4 times, others 3\n    zephyr set FILE OUT 1 "
         "iterations=0\n"},
        {"two loops", Start().Loop(0).Loop(0).SmallImage().Add({0x3B}),
         "block 1: another loop block follows; browsers heed the last one, others the first\n    zephyr delete FILE "
         "OUT 1\n"},
        {"loop behind", Start().SmallImage().Loop(0).Add({0x3B}), "block 2: the loop block stands behind an image"},
        {"same palette", Start().SmallImage(0x81).Add({0x3B}),
         "block 1: the local palette is the global one once more: 12 bytes\n"},
        {"unused palette", Start().SmallImage(0x82).Add({0x3B}),
         "block 0: no image uses the global palette: 12 bytes\n"},
        {"text", Start().Extension(1, std::string("\x0C\0\0\0\0\1\0\1\0\1\1\0\1", 13), "x").SmallImage().Add({0x3B}),
         "block 1: browsers do not show plain texts\n    zephyr delete FILE OUT 1\n"},
        {"foreign", Start().Extension(0xFF, "\x0BXMP DataXMP", "<x/>").SmallImage().Add({0x3B}),
         "block 1: a block of another program, XMP DataXMP; players skip it"},
        {"unknown", Start().Extension(0x77, "", "?").SmallImage().Add({0x3B}), "block 1: a block of an unknown kind"},
        {"no trailer", Start().SmallImage(),
         "the file ends without a trailer; players differ in what they show of it\n    zephyr repair FILE OUT\n"},
        {"harmless", Start().SmallImage().Add({0x3B, 1, 2}),
         "there are bytes behind the trailer: 2; players do not mind\n"},
    };
    TempFolder folder;
    const std::string path = folder.Path("a.gif");
    for (const auto& [what, bytes, found] : cases) {
        WriteAll(path, bytes);
        CliRun run = RunCli({"check", path});
        EXPECT_EQ(run.status, 1) << what;
        std::string out = run.out;
        for (size_t at; (at = out.find("'" + path + "'")) != std::string::npos;)
            out.replace(at, path.size() + 2, "FILE");
        for (size_t at; (at = out.find(path)) != std::string::npos;) out.replace(at, path.size(), "FILE");
        EXPECT_NE(out.find(found), std::string::npos) << what << ":\n" << out;
    }
}

TEST(CliCheck, FindsNothingInAWellMadeAnimation) {
    TempFolder folder;
    const std::string path = folder.Path("it's well.gif");
    WriteAll(path,
             Screen(2, 2).Loop(0).Control(50, 4).SmallImage().Control(50, 4).SmallImage().Comment("x").Add({0x3B}));
    CliRun run = RunCli({"check", path});
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.status, 0);
    EXPECT_NE(RunCli({"check", "--json", path}).out.find("\"read\": true, \"findings\": []}]"), std::string::npos);
}

TEST(CliCheck, MendsWithTheCommandThatItTells) {
    TempFolder folder;
    const std::string path = folder.Path("it's one.gif");
    WriteAll(path, Screen(2, 2).Control(0, 4).SmallImage().Control(50, 4).SmallImage().Add({0x3B}));
    const std::string out = RunCli({"check", path}).out;
    EXPECT_NE(out.find("it'\\''s one.gif' OUT 1 delay=10\n"), std::string::npos) << out;
    EXPECT_EQ(RunCli({"set", path, path, "1", "delay=10"}).status, kExitDone);
    EXPECT_EQ(RunCli({"check", path}).out.find("delay"), std::string::npos);
}

TEST(CliCheck, TellsTroubleFromFindings) {
    TempFolder folder;
    const std::string well = folder.Path("well.gif"), odd = folder.Path("odd.gif"), none = folder.Path("none.gif");
    WriteAll(well, Screen(2, 2).SmallImage().Add({0x3B}));
    WriteAll(odd, Screen(2, 2).SmallImage());
    EXPECT_EQ(RunCli({"check", well}).status, 0);
    EXPECT_EQ(RunCli({"check", well, odd}).status, 1);
    CliRun run = RunCli({"check", "--json", none, odd});
    EXPECT_EQ(run.status, 2);
    EXPECT_NE(run.out.find("\"read\": false, \"findings\": []},\n"), std::string::npos) << run.out;
    EXPECT_NE(run.out.find("\"check\": \"damage\", \"what\": \"at byte "), std::string::npos) << run.out;
    EXPECT_NE(run.err.find("there is no such file"), std::string::npos);
    EXPECT_EQ(RunCli({"check"}).status, kExitUsage);
    EXPECT_EQ(RunCli({"check", "--xml", well}).status, kExitUsage);
}

TEST(CliCheck, TellsTheFirstOfManyAlike) {
    TempFolder folder;
    const std::string path = folder.Path("many.gif");
    GifBytes bytes = Screen(2, 2);
    for (int i = 0; i < 30; ++i) bytes.Control(1, 4).SmallImage();
    WriteAll(path, bytes.Add({0x3B}));
    const CliRun run = RunCli({"check", path});
    EXPECT_NE(run.out.find("delay: 20 more like these, which --json tells\n"), std::string::npos) << run.out;
    EXPECT_NE(RunCli({"check", "--json", path}).out.find("OUT 59 delay=10"), std::string::npos);
}
