// The command line in the whole manner, its default: nothing is lost, and nothing changes but what is asked for.
#include "tests/support/cli_runner.h"
#include "tests/support/picture_files.h"
#include "tests/support/random_images.h"
#include "tests/support/test_blocks.h"

using namespace std::string_literals;

namespace {

constexpr char kXmpHead[] = "\x0BXMP DataXMP";

// What ends an XMP packet.
Bytes XmpEnding() {
    GifBytes ending = GifBytes().Add({1});
    for (int byte = 255; byte >= 0; --byte) ending.Add({byte});
    return ending.Add({0});
}

class CliWhole : public testing::Test {
protected:
    CliRun Run(const std::string& command, const Words& behindOut = {}) const {
        Words words = {command, in_, out_};
        words.insert(words.end(), behindOut.begin(), behindOut.end());
        return RunCli(words);
    }

    TempFolder folder_;
    std::string in_ = folder_.Path("in.gif"), out_ = folder_.Path("out"), data_ = folder_.Path("data");
    const GifBytes start_ = GifBytes().Header("GIF87a", 9, 9, 0x81), foreign_ = GifBytes().Extension(0xCE, "", "x\0y"s);
    const GifBytes text_ = GifBytes().Add({0x21, 0xFE, 1, 'a', 2, 9, '\n', 0}), behind_ = GifBytes().Add({0x3B, 1, 2});
    const GifBytes all_ = GifBytes(start_).SmallImage().Add({0}).Add(foreign_).Add(text_).Add(behind_);
};

TEST_F(CliWhole, NothingChangesButWhatIsAskedFor) {
    WriteAll(in_, all_);
    const Bytes fitted =
        GifBytes().Header("GIF87a", 2, 2, 0x81).SmallImage().Add({0}).Add(foreign_).Add(text_).Add(behind_);
    GifBytes moved = GifBytes(start_).SmallImage();
    moved[start_.size() + 1] = 7;  // left
    GifBytes interlaced = GifBytes(start_).SmallImage();
    interlaced[start_.size() + 9] = 0x41;  // with the depth of the palette, where the file has another
    const GifBytes identity = GifBytes().Comment("FILE IDENTITY\r\nCreated or modified by\r\nO\r\nG");
    const std::tuple<Words, Bytes> cases[] = {
        {{"save"}, all_},
        {{"save", "--fit-screen"}, fitted},
        {{"save", "--owner=O", "--organisation=G"},
         GifBytes(start_).SmallImage().Add({0}).Add(foreign_).Add(text_).Add(identity).Add(behind_)},
        {{"delete", "2"}, GifBytes(start_).SmallImage().Add(text_).Add(behind_)},
        {{"set", "0", "width=9", "background=0", "sorted=no"}, all_},
        {{"set", "1", "left=0", "interlaced=no"}, all_},
        {{"set", "1", "left=7"}, GifBytes(moved).Add({0}).Add(foreign_).Add(text_).Add(behind_)},
        {{"set", "1", "interlaced=yes"}, GifBytes(interlaced).Add({0}).Add(foreign_).Add(text_).Add(behind_)},
        {{"set", "3", "text=a"}, all_},  // as it is shown
        {{"set", "3", "text=b"}, GifBytes(start_).SmallImage().Add({0}).Add(foreign_).Comment("b").Add(behind_)},
        {{"set", "3", "text="}, GifBytes(start_).SmallImage().Add({0}).Add(foreign_).Add({0x21, 0xFE, 0}).Add(behind_)},
        {{"insert", "--kind=control", "--at=0"},
         GifBytes(start_).Control(1).SmallImage().Add({0}).Add(foreign_).Add(text_).Add(behind_)},
    };
    for (const auto& [words, expected] : cases) {
        SCOPED_TRACE(testing::PrintToString(words));
        CliRun run = Run(words[0], {words.begin() + 1, words.end()});
        EXPECT_EQ(run.status, kExitDone);
        EXPECT_EQ(ReadAll(out_), expected);
    }
    EXPECT_EQ(Run("set", {"3", "text=" + std::string(kMaxTextBytes + 1, 'x')}).status, kExitUsage);
}

TEST_F(CliWhole, TheNamesMayBeTheFirstExtension) {
    const GifBytes image = GifBytes().SmallImage(), end = GifBytes().Add({0x3B});
    const GifBytes names = GifBytes().Comment("FILE IDENTITY\r\nCreated or modified by\r\nO\r\nG");
    WriteAll(in_, GifBytes(start_).Add(image).Add(end));
    (void)Run("save", {"--owner=O", "--organisation=G"});
    EXPECT_EQ(ReadAll(out_), GifBytes().Header("GIF89a", 9, 9, 0x81).Add(image).Add(names).Add(end));
}

// An empty text that the file has is written; set to nothing it is gone, although both are shown alike.
TEST_F(CliWhole, ClassicallyAnEmptyTextThatIsSetIsLeftOut) {
    WriteAll(in_, GifBytes(start_).Comment("").SmallImage().Add({0x3B}));
    EXPECT_EQ(RunCli({"save", "--classic", in_, out_}).status, kExitDone);
    EXPECT_EQ(KindsOf(LoadedGif(ReadAll(out_), Manner::kWhole)), "1626") << "with the names";
    EXPECT_EQ(RunCli({"set", "--classic", in_, out_, "1", "text="}).status, kExitDone);
    EXPECT_EQ(KindsOf(LoadedGif(ReadAll(out_), Manner::kWhole)), "126") << "with the names alone";
}

TEST_F(CliWhole, DamagesAreToldAndStrictRefusesThem) {
    const std::string at = "zephyr: " + in_ + ": ", strict = at + "it is damaged, which --strict does not allow\n";
    GifBytes many = start_;
    std::string places;
    for (int i = 0; i < 23; ++i) {
        if (i < 20) places += at + "at byte " + std::to_string(many.size()) + ": 1 byte starts no block\n";
        many.Add({0}).Add(text_);
    }
    const std::tuple<GifBytes, std::string, bool> cases[] = {
        {GifBytes(start_).SmallImage().Add({0x3B}), "", false},
        {GifBytes(start_).SmallImage().Add(behind_), at + "note: at byte 42: there are bytes behind the trailer: 2\n",
         false},
        {GifBytes(start_).SmallImage(), at + "at byte 41: the file ends without a trailer\n", true},
        {many.Add({0x3B}), places + at + "and 3 more places\n", true},
    };
    for (const auto& [bytes, told, isDamaged] : cases) {
        WriteAll(in_, bytes);
        EXPECT_EQ(RunCli({"list", in_}).err, told);
        CliRun run = RunCli({"list", "--strict", in_});
        EXPECT_EQ(run.err, told + (isDamaged ? strict : ""));
        EXPECT_EQ(run.status, isDamaged ? kExitFailed : kExitDone);
        std::remove(out_.c_str());
        EXPECT_EQ(Run("save", {"--strict"}).status, run.status);
        EXPECT_EQ(FileExists(out_), !isDamaged);
    }
}

TEST_F(CliWhole, JsonTellsTheBytesOfEachBlock) {
    const std::string prefix(128, 'p');
    WriteAll(in_, GifBytes().Text(prefix).Header("GIF89a", 9, 9, 0).Add(foreign_).Add({0, 0x21, 0xFE, 0}).Add(behind_));
    const std::string json = RunCli({"list", "--json", in_}).out;
    for (
        const char* part :
        {R"("ended": "trailer", "manner": "whole", "damages": [{"offset": 0, "block": null, "harmless": true, "text": )",
         R"({"offset": 148, "block": 2, "harmless": false, "text": "1 byte starts no block"}, )",
         R"(, "before": "70707070)", R"("offset": 128, "bytes": 13, "raw": "47494638396109000900000000"}, )",
         R"("data": "780079", "offset": 141, "bytes": 7, "raw": "21ce0378007900"}, )",
         R"(, "stray": "00", "offset": 149, "bytes": 3, "raw": "21fe00"}], "after": "3b0102"})"})
        EXPECT_NE(json.find(part), std::string::npos) << part << "\n" << json;
    const std::string large(100000, 'x');
    WriteAll(in_, GifBytes().Header("GIF89a", 9, 9, 0).Comment(large).Add({0x3B}));
    EXPECT_NE(RunCli({"list", "--json", in_}).out.find("\"bytes\": 100396, \"raw\": \"21feff7878"), std::string::npos);
}

TEST_F(CliWhole, DataGoesInAndComesOutAlike) {
    std::string every;
    for (int i = 0; i < 700; ++i) every += static_cast<char>(i % 251);
    const Bytes ending = XmpEnding();
    const std::string endingText(ending.begin(), ending.end()), packet(40000, 'p');
    const struct {
        std::string data;
        bool isRawXmp;  // when it is given to the XMP block
    } cases[] = {
        {"", true},     {"<x:xmpmeta/>", true}, {packet, true},      {std::string(255, 'a'), true},
        {every, false}, {"\0zero"s, false},     {endingText, false}, {std::string(257 - 2, '\0') + endingText, false},
    };
    const GifBytes before = GifBytes(start_).Add({0}), behind = GifBytes(text_).Add(behind_);
    const std::string identifier = "\x0BICCRGBG1012";
    // Those of known labels have to stay of unknown type.
    const std::tuple<int, std::string, size_t> blocks[] = {
        {0xFF, identifier, 255}, {0xFF, kXmpHead, 100}, {0xCE, "", 255}, {0xF9, "", 3}, {0x01, "", 11}, {0xFF, "", 10}};
    for (const auto& [label, fixed, longest] : blocks) {
        for (const auto& [data, isRawXmp] : cases) {
            SCOPED_TRACE(fixed + " " + data.substr(0, 12));
            WriteAll(in_, GifBytes(before).Extension(label, fixed, "old").Add(behind));
            WriteAll(data_, data);
            (void)Run("set", {"1", "data=@" + data_});
            GifBytes expected = GifBytes(before).Add({0x21, label}).Text(fixed);
            const bool isXmp = fixed == kXmpHead;
            if (isXmp && isRawXmp)
                expected.Text(data).Add(ending);
            else
                expected.SubBlocks(data, longest);
            EXPECT_EQ(ReadAll(out_), expected.Add(behind));
            EXPECT_EQ(RunCli({"extract", out_, "1", data_}).status, kExitDone);
            EXPECT_EQ(ReadAll(data_), Bytes(data.begin(), data.end()));
            EXPECT_EQ(RunCli({"set", out_, in_, "1", "data=@" + data_}).status, kExitDone);
            EXPECT_EQ(ReadAll(in_), ReadAll(out_)) << "the same data";
        }
    }
    WriteAll(in_, GifBytes(before).Add({0x21, 0xFF}).Text(kXmpHead).SubBlocks("as it should not be", 3).Add(behind));
    EXPECT_EQ(RunCli({"extract", in_, "1", data_}).status, kExitDone);
    EXPECT_EQ(ReadAll(data_), GifBytes().Text("as it should not be"));
    (void)Run("set", {"1", "data=@" + data_});
    EXPECT_EQ(ReadAll(out_), ReadAll(in_)) << "data that it has already";

    WriteAll(data_, "from standard input");
    ASSERT_NE(freopen(data_.c_str(), "rb", stdin), nullptr);
    (void)Run("set", {"1", "data=@-"});
    EXPECT_EQ(ReadAll(out_),
              GifBytes(before).Add({0x21, 0xFF}).Text(kXmpHead).Text("from standard input").Add(ending).Add(behind));
}

TEST_F(CliWhole, WhatIsRefused) {
    WriteAll(in_, GifBytes(start_).ImageHead(2, 2, 0).Add({12, 1, 0, 0}).Extension(0xFF, kXmpHead, "x").Add({0x3B}));
    const std::string none = folder_.Path("none"), at = "zephyr: " + in_ + ": ";
    const std::tuple<Words, int, std::string> cases[] = {
        {{"set", in_, out_, "2", "data=@" + none}, 1, "zephyr: " + none + ": can't be opened: there is no such file\n"},
        {{"set", in_, out_, "2", "data=@" + folder_.Path("")},
         1,
         "zephyr: " + folder_.Path("") + ": can't be opened: it is a folder\n"},
        {{"set", in_, out_, "2", "data=x"},
         2,
         "zephyr set: data wants @ and the name of a file, or @- for standard input (see zephyr set --help)\n"},
        {{"set", in_, out_, "2", "data=@"},
         2,
         "zephyr set: data wants @ and the name of a file, or @- for standard input (see zephyr set --help)\n"},
        {{"set", in_, out_, "2", "text=x"},
         1,
         at + "block 2: APPLICATION-DEFINED blocks have no field text, but data\n"},
        {{"set", "--classic", in_, out_, "2", "data=@" + in_},
         1,
         at + "block 2: APPLICATION-DEFINED blocks can't be changed\n"},
        {{"extract", in_, "1", out_}, 1, at + "block 1 has no picture that can be decoded\n"},
        {{"remap", in_, "1", out_, "--palette=6"}, 1, at + "block 1 has no picture that can be decoded\n"},
        {{"set", in_, out_, "1", "left=1", "interlaced=yes"},
         1,
         at + "block 1: interlaced wants a picture that can be decoded\n"},
        {{"extract", in_, "0", out_}, 1, at + "block 0 is not an image\n"},
        {{"extract", "--classic", in_, "2", out_}, 1, at + "block 2 is not an image\n"},
    };
    for (const auto& [words, status, told] : cases) {
        CliRun run = RunCli(words);
        EXPECT_EQ(run.status, status);
        EXPECT_TRUE(run.err.ends_with(told)) << run.err;
        EXPECT_FALSE(FileExists(out_));
    }
}

TEST_F(CliWhole, ImagesBeyondTheScreenAreToldOfWhenTouched) {
    WriteAll(in_, GifBytes().Header("GIF89a", 2, 2, 0).SmallImage(0x81).ImageHead(2, 3, 0x81).Add({2, 1, 4, 0, 0x3B}));
    Random random(3);
    WritePicture(data_, RandomImage(random, 3, 1, 8, {}), 8);
    auto beyond = [&](const std::string& block) {
        return "zephyr: " + out_ + ": warning: block " + block +
               ": an image that reaches beyond the screen of 2 x 2 (--fit-screen makes room)\n";
    };
    const std::tuple<Words, std::string> cases[] = {
        {{"save"}, ""},
        {{"delete", "1"}, ""},
        {{"set", "1", "left=0"}, ""},
        {{"set", "1", "left=1"}, beyond("1")},
        {{"set", "1", "left=1", "--fit-screen"}, ""},
        {{"set", "0", "background=1"}, beyond("2")},
        {{"insert", "--kind=image", "--at=1", data_, data_}, beyond("2 and 1 more")},  // in their own colours, unasked
        {{"set", "1", "left=65534", "interlaced=yes"},
         "zephyr: " + out_ +
             ": warning: block 1: an image that reaches beyond 65535 pixels is refused by other programs\n" +
             beyond("1")},
    };
    for (const auto& [words, told] : cases) {
        CliRun run = Run(words[0], {words.begin() + 1, words.end()});
        const size_t warning = run.err.find("zephyr: " + out_);
        EXPECT_EQ(warning == std::string::npos ? "" : run.err.substr(warning), told) << words[0];
        EXPECT_EQ(run.status, kExitDone);
    }
}

TEST_F(CliWhole, BuildSignsOnlyWithNamesAndFitsTheScreen) {
    Random random(4);
    WritePicture(data_, RandomImage(random, 6, 4, 8, {}), 8);
    for (const auto& [names, kinds] : {std::pair{Words{}, "13232"}, {Words{"--owner=O"}, "132326"}}) {
        Words words = {"build", "-o", out_, data_, data_};
        words.insert(words.end(), names.begin(), names.end());
        CliRun run = RunCli(words);
        EXPECT_EQ(run.err, "");
        LoadedGif made(ReadAll(out_));
        EXPECT_EQ(KindsOf(made), kinds);
        EXPECT_EQ(GetHeaderFields(BlockAt(made, 0)).screenWidth, 6);
        EXPECT_TRUE(made.report.reachedTrailer);
    }
}

}  // namespace
