// zephyr move, copy, timing, reverse, thin and cut: what they write, and what they refuse.
#include <gtest/gtest.h>

#include "tests/support/cli_runner.h"
#include "tests/support/operations.h"
#include "tests/support/row_document.h"

namespace {

constexpr char kBehind[] = "note: at byte 83: there are bytes behind the trailer: 6\n";
constexpr char kColours[] = "block 2: its colours are not the document's: give --remap, --dither or --keep";

// 0 HEADER, 1 COMMENT, 2 IMAGE of all the screen, 3 CONTROL, 4 CONTROL, 5 IMAGE of a part of it.
class CliOperations : public testing::Test {
protected:
    void SetUp() override {
        GifBytes bytes = GifBytes().Header("GIF89a", 2, 2, 0x81).Comment("words").SmallImage();
        bytes.Control(9).Control(7, 1, 1).SmallImage();
        WriteAll(Path("in.gif"), bytes.Add({0x3B, 'b', 'e', 'h', 'i', 'n', 'd'}));
        WriteAll(Path("bare.gif"), GifBytes().Header("GIF87a", 2, 2, 0).Add({0x3B}));
        WriteAll(Path("single.gif"), GifBytes().Header("GIF87a", 2, 2, 0x81).SmallImage().Add({0x3B}));
        WriteAll(Path("other.gif"), GifBytes().Header("GIF89a", 2, 2, 0).Comment("c").SmallImage(0x82).Add({0x3B}));
        WriteAll(Path("two.gif"), GifBytes().Header("GIF89a", 2, 2, 0x80).Comment("c").Add({0x3B}));
        WriteAll(Path("cut.gif"), Bytes(bytes.begin(), bytes.begin() + 60));
    }

    std::string Path(const std::string& name) const { return folder_.Path(name); }

    CliRun Run(const std::string& in, Words words) const {
        words.insert(words.begin() + 1, {Path(in), Path("out.gif")});
        for (std::string& word : words)
            if (word.ends_with(".gif") && word.find('/') == std::string::npos && word.find('\\') == std::string::npos)
                word = Path(word);
        return RunCli(words);
    }

    TempFolder folder_;
};

}  // namespace

TEST_F(CliOperations, WhatTheyWrite) {
    const struct {
        const char* in;
        Words words;
        const char *kinds, *err = "";
    } cases[] = {
        {"in.gif", {"move", "1", "--at", "last"}, "123326"},
        {"in.gif", {"move", "last,comment", "--at", "0"}, "126233"},
        {"in.gif", {"move", "frame:1", "--at", "0", "--keep-looks"}, "1332632"},
        {"in.gif", {"copy", "frame:1", "comment", "--at", "image:0"}, "1623326332"},
        {"in.gif", {"copy", "image", "--from", "other.gif", "--at", "0"}, "1262332"},
        {"two.gif", {"copy", "image", "--from", "other.gif", "--at", "0", "--keep"}, "126"},
        {"two.gif", {"copy", "2", "--from", "other.gif", "--at", "0", "--dither"}, "126"},
        {"in.gif", {"copy", "1", "--from", "other.gif", "--at", "comment"}, "1662332"},
        {"bare.gif", {"copy", "frame", "--from", "other.gif", "--at", "0"}, "12"},
        {"in.gif", {"timing", "--delay", "3"}, "1632332"},
        {"in.gif", {"timing", "last", "--scale=0.5"}, "162332"},
        {"in.gif",
         {"timing", "1", "--total", "1"},
         "162332",
         "note: of 1 frame the delay is now below 2, for which players take 10"},
        {"in.gif", {"timing", "frame:0", "0", "--least", "0"}, "162332"},
        {"in.gif", {"reverse"}, "1633232"},
        {"in.gif", {"reverse", "0"}, "162332"},
        {"in.gif", {"thin", "--every", "2"}, "1632"},
        {"in.gif", {"cut", "1"}, "16332"},
        {"in.gif", {"cut", "last,0"}, "162332"},
        {"single.gif", {"reverse"}, "12"},
        {"single.gif", {"cut", "frame"}, "12"},
    };
    for (const auto& [in, words, kinds, err] : cases) {
        SCOPED_TRACE(words[0] + " " + kinds);
        const CliRun run = Run(in, words);
        EXPECT_EQ(run.status, kExitDone);
        const std::string name = "zephyr: " + Path(in) + ": ";
        const std::string behind = in == std::string("in.gif") ? name + kBehind : "";
        EXPECT_EQ(run.err, behind + (*err ? name + err + "\n" : ""));
        EXPECT_EQ(run.out, "");
        const Bytes bytes = ReadAll(Path("out.gif"));
        EXPECT_EQ(KindsOf(LoadedGif(bytes, Manner::kWhole)), kinds);
        if (in == std::string("in.gif")) {
            EXPECT_TRUE(std::string(bytes.begin(), bytes.end()).ends_with("behind"));
        }
    }
}

TEST_F(CliOperations, WhatTheyRefuseAndThenWriteNothing) {
    const struct {
        const char* in;
        Words words;
        int status;
        const char* told;
    } cases[] = {
        {"in.gif", {"move", "1"}, kExitUsage, "give --at and the number of a block"},
        {"in.gif", {"move", "--at", "1"}, kExitUsage, "give IN, OUT and the blocks to be moved"},
        {"in.gif", {"move", "image:", "--at", "1"}, kExitUsage, "not image:"},
        {"in.gif", {"move", "1", "--at", "x"}, kExitUsage, "not x"},
        {"in.gif", {"move", "0", "--at", "1"}, kExitFailed, "the header can't be moved"},
        {"in.gif", {"move", "9", "--at", "1"}, kExitFailed, "there is no block 9; they are numbered 0 to 5"},
        {"in.gif", {"move", "1", "--at", "9"}, kExitFailed, "there is no block 9; they are numbered 0 to 5"},
        {"in.gif", {"copy", "1", "--at", "1", "--keep"}, kExitUsage, "are for blocks of another file (--from)"},
        {"in.gif", {"copy", "1", "--at", "1", "--from", "other.gif", "--keep", "--remap"}, kExitUsage, "give one of"},
        {"in.gif",
         {"copy", "1", "--at", "1", "--from", "other.gif", "--keep-looks", "--remap"},
         kExitUsage,
         "without --remap"},
        {"in.gif", {"copy", "header", "--at", "1"}, kExitFailed, "The header block can't be copied or deleted."},
        {"two.gif", {"copy", "2", "--at", "1", "--from", "other.gif"}, kExitFailed, kColours},
        {"in.gif", {"copy", "3", "--at", "1", "--from", "other.gif"}, kExitFailed, "there is no block 3;"},
        {"in.gif", {"copy", "1", "--at", "1", "--from", "none.gif"}, kExitFailed, "there is no such file"},
        {"in.gif", {"timing"}, kExitUsage, "give one of --delay, --scale, --total and --least"},
        {"in.gif", {"timing", "--delay", "5", "--least", "6"}, kExitUsage, "give one of"},
        {"in.gif", {"timing", "--delay", "65536"}, kExitUsage, "give --delay and hundredths of a second"},
        {"in.gif", {"timing", "--scale", "0"}, kExitUsage, "give --scale and a number above 0"},
        {"in.gif", {"timing", "--scale", "1."}, kExitUsage, "give --scale and a number above 0"},
        {"in.gif", {"timing", "--scale", "1.2.3"}, kExitUsage, "give --scale and a number above 0"},
        {"in.gif", {"timing", "--scale", "9999.999999"}, kExitUsage, "give --scale and a number above 0"},
        {"in.gif", {"timing", "--scale", "-1"}, kExitUsage, "give --scale and a number above 0"},
        {"in.gif", {"timing", "--total", "200000"}, kExitFailed, "frame 1 would have a delay of 200000"},
        {"in.gif", {"timing", "2", "--delay", "5"}, kExitFailed, "there is no frame 2; they are numbered 0 to 1"},
        {"in.gif", {"timing", "comment", "--delay", "5"}, kExitFailed, "give frames as in 4, 2-last or frame:0"},
        {"bare.gif", {"timing", "--delay", "5"}, kExitFailed, "there is no frame"},
        {"bare.gif", {"reverse"}, kExitFailed, "there is no frame"},
        {"bare.gif", {"thin", "--every", "2"}, kExitFailed, "there is no frame"},
        {"bare.gif", {"cut", "0"}, kExitFailed, "there is no frame"},
        {"bare.gif", {"copy", "frame", "--from", "bare.gif", "--at", "0"}, kExitFailed, "there is no frame"},
        {"in.gif", {"reverse", "image"}, kExitFailed, "give frames as in 4, 2-last or frame:0, not image"},
        {"in.gif", {"thin"}, kExitUsage, "give --every and a number of frames from 1 on"},
        {"in.gif", {"thin", "--every", "0"}, kExitUsage, "give --every and a number of frames from 1 on"},
        {"in.gif", {"thin", "1", "--every", "2"}, kExitUsage, "give IN and OUT"},
        {"in.gif", {"cut"}, kExitUsage, "give IN, OUT and the frames to be kept"},
        {"in.gif", {"cut", "1-0"}, kExitFailed, "the range 1-0 runs backwards"},
        {"in.gif", {"cut", "2"}, kExitFailed, "there is no frame 2; they are numbered 0 to 1"},
        {"in.gif", {"cut", "1", "--owner", "\xE2\x98\x83"}, kExitUsage, "--owner"},
        {"in.gif", {"cut", "1", "--every", "2"}, kExitUsage, "unknown option --every"},
        {"cut.gif", {"reverse", "--strict"}, kExitFailed, "it is damaged, which --strict does not allow"},
        {"none.gif", {"reverse"}, kExitFailed, "there is no such file"},
    };
    for (const auto& [in, words, status, told] : cases) {
        const CliRun run = Run(in, words);
        EXPECT_EQ(run.status, status) << told;
        EXPECT_NE(run.err.find(told), std::string::npos) << run.err;
        EXPECT_FALSE(FileExists(Path("out.gif"))) << told;
    }
}

TEST_F(CliOperations, ClassicFitsTheScreenAndSigns) {
    ASSERT_EQ(RunClassic({"cut", Path("in.gif"), Path("out.gif"), "0"}).status, kExitDone);
    EXPECT_EQ(KindsOf(LoadedGif(ReadAll(Path("out.gif")))), "1626") << "the identity comment at the end";
}
