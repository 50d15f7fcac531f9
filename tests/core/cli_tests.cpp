#include <gtest/gtest.h>

#include <cstring>
#include <fstream>

#include "cli/commands.h"
#include "platform/faults.h"
#include "platform/identity.h"
#include "tests/support/gif_bytes.h"
#include "tests/support/json_shape.h"

namespace {

struct Outcome {
    int status;
    std::string out, err;
};

Outcome Zephyr(const Words& words) {
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    int status = RunZephyr(words);
    fflush(stdout);
    return {status, testing::internal::GetCapturedStdout(), testing::internal::GetCapturedStderr()};
}

GifBytes Document() {
    return GifBytes()
        .Header("GIF87a", 9, 9, 0x81)
        .Comment("\"caf\xE9\"\\\x7F")
        .SmallImage()
        .Extension(0xFF, "\x0BKELMORnb1.0", {"\1\0\2\0\2\0\2\0........\x80\0", 18})
        .Add({0x3B});
}

class Cli : public testing::Test {
protected:
    Cli() {
        WriteAll(good_, Document());
        WriteAll(cut_, GifBytes().Header("GIF89a", 9, 9, 0x81).Comment("x").Add({0x2C, 0}));
        WriteAll(other_, GifBytes().Text("no picture at all, only text"));
        WriteAll(open_, GifBytes().Header("GIF89a", 9, 9, 0x81).Comment("x"));
    }
    ~Cli() override {
        faults = {};
        SetUserIdentity(nullptr, nullptr);
    }

    TempFolder folder_;
    std::string good_ = folder_.Path("good.gif"), cut_ = folder_.Path("cut.gif"), other_ = folder_.Path("other.gif"),
                open_ = folder_.Path("open.gif"), out_ = folder_.Path("out"), none_ = folder_.Path("none.gif");
};

size_t Count(const std::string& text, const std::string& piece) {
    size_t count = 0;
    for (size_t at = text.find(piece); at != std::string::npos; at = text.find(piece, at + 1)) ++count;
    return count;
}

}  // namespace

TEST_F(Cli, ListPrintsLines) {
    Outcome o = Zephyr({"list", good_});
    EXPECT_EQ(o.status, 0);
    EXPECT_EQ(o.out,
              "HEADER GIF87a Screen (9 x 9)\nCOMMENT \"caf\xC3\xA9\"\\\x7F\nIMAGE \xE2\x82\xAC 2 x 2, 4 colours\n"
              "BLOCK NAMES\n");
    EXPECT_EQ(o.err, "");
}

TEST_F(Cli, ListPrintsJson) {
    Outcome o = Zephyr({"list", "--json", good_});
    EXPECT_EQ(o.status, 0);
    EXPECT_EQ(JsonShape(o.out),
              "{result:n,blocks:[{position:n,kind:n,kindName:s,line:s,descriptor:s,dataLength:n,palette:s},"
              "{position:n,kind:n,kindName:s,line:s,descriptor:s,dataLength:n,data:s},"
              "{position:n,kind:n,kindName:s,line:s,descriptor:s,dataLength:n,name:s,"
              "image:{width:n,height:n,bitCount:n}},"
              "{position:n,kind:n,kindName:s,line:s,descriptor:s,dataLength:n,data:s}]}\n");
    for (const char* piece : {"{\"result\": 1, ", "\"position\": 2, \"kind\": 2, \"kindName\": \"IMAGE\", ",
                              "\"data\": \"22636166e9225c7f\"", "\"line\": \"COMMENT \\\"caf\xC3\xA9\\\"\\\\\x7F\"",
                              "\"name\": \"\xE2\x82\xAC\"", "\"dataLength\": 18",
                              "\"descriptor\": \"47494638376109000900810000"
                              "00000000\"",
                              "\"palette\": \"000000010203020406030609"
                              "0000",
                              "\"image\": {\"width\": 2, \"height\": 2, \"bitCount\": 4}"})
        EXPECT_EQ(Count(o.out, piece), 1u) << piece;
}

TEST_F(Cli, ListTellsHowLoadsEnd) {
    struct Case {
        std::string file;
        int status;
        const char *json, *lines, *error;
    } const cases[] = {
        {cut_, 1, "{\"result\": 0, \"blocks\": [{\"position\": 0, ", "HEADER GIF89a Screen (9 x 9)\nCOMMENT x\n",
         ": corrupt GIF data, or not enough memory\n"},
        {other_, 1, "{\"result\": 2, \"blocks\": []}\n", "", ": not a GIF file\n"},
        {none_, 1, "{\"result\": 0, \"blocks\": []}\n", "", ": can't be opened\n"},
        {open_, 0, "{\"result\": 1, \"blocks\": [{", "HEADER GIF89a Screen (9 x 9)\nCOMMENT x\n",
         ": note: loading ended before the trailer; blocks behind that point are not in the document\n"},
    };
    for (const Case& c : cases) {
        Outcome lines = Zephyr({"list", c.file});
        Outcome json = Zephyr({"list", c.file, "--json"});
        EXPECT_EQ(lines.status, c.status);
        EXPECT_EQ(json.status, c.status);
        EXPECT_EQ(lines.out, c.lines);
        EXPECT_EQ(json.out.substr(0, strlen(c.json)), c.json);
        EXPECT_EQ(lines.err, "zephyr: " + c.file + c.error);
        EXPECT_EQ(json.err, lines.err);
    }
}

TEST_F(Cli, SaveFitsTheScreenAndSignsTheFile) {
    EXPECT_EQ(Zephyr({"save", good_, out_}).status, 0);
    GifBytes expected = GifBytes().Header("GIF89a", 2, 2, 0x81).Comment("\"caf\xE9\"\\\x7F").SmallImage(1);
    GifBytes nameless = GifBytes(expected).Comment("FILE IDENTITY\r\nCreated or modified by\r\n\r\n").Add({0x3B});
    EXPECT_EQ(ReadAll(out_), nameless);
    Outcome named = Zephyr({"save", "--owner=Zo\xC3\xA9", good_, "--organisation", "K", out_});
    EXPECT_EQ(named.status, 0);
    EXPECT_EQ(named.out + named.err, "");
    EXPECT_EQ(ReadAll(out_),
              GifBytes(expected).Comment("FILE IDENTITY\r\nCreated or modified by\r\nZo\xE9\r\nK").Add({0x3B}));
    EXPECT_EQ(Zephyr({"save", out_, out_, "--owner", "Zo\xC3\xA9", "--organisation", "K"}).status, 0);
    EXPECT_EQ(Count({reinterpret_cast<const char*>(ReadAll(out_).data()), ReadAll(out_).size()}, "FILE IDENTITY"), 1u);
}

TEST_F(Cli, ExtractWritesABmpFile) {
    EXPECT_EQ(Zephyr({"extract", good_, "2", out_}).status, 0);
    GifBytes expected = GifBytes().Text("BM").Add({126, 0, 0, 0, 0, 0, 0, 0, 118, 0, 0, 0, 40, 0, 0, 0, 2, 0, 0, 0});
    expected.Add({2, 0, 0, 0, 1, 0, 4, 0, 0, 0, 0, 0, 8, 0, 0, 0}).Repeat(0, 8).Add({16, 0, 0, 0, 16, 0, 0, 0});
    for (int i = 0; i < 16; ++i) expected.Add({i < 4 ? 3 * i : 0, i < 4 ? 2 * i : 0, i < 4 ? i : 0, 0});
    expected.Add({0x30, 0, 0, 0, 0x12, 0, 0, 0});
    EXPECT_EQ(ReadAll(out_), expected);
    EXPECT_EQ(folder_.Names().size(), 5u);
}

TEST_F(Cli, FailuresKeepAnExistingOutput) {
    struct Case {
        Words words;
        std::string error;
    } const cases[] = {
        {{"save", cut_, out_}, cut_ + ": corrupt GIF data, or not enough memory"},
        {{"save", other_, out_}, other_ + ": not a GIF file"},
        {{"save", none_, out_}, none_ + ": can't be opened"},
        {{"extract", none_, "1", out_}, none_ + ": can't be opened"},
        {{"extract", good_, "1", out_}, good_ + ": block 1 is not an image"},
        {{"extract", good_, "4", out_}, good_ + ": no block 4"},
        {{"extract", good_, "-1", out_}, ""},
        {{"extract", good_, "2x", out_}, good_ + ": no block 2x"},
        {{"extract", good_, "", out_}, good_ + ": no block "},
        {{"extract", good_, "99999999999999999999", out_}, good_ + ": no block 99999999999999999999"},
    };
    for (const Case& c : cases) {
        WriteAll(out_, {1, 2, 3});
        Outcome o = Zephyr(c.words);
        EXPECT_EQ(o.out, "");
        EXPECT_EQ(ReadAll(out_), Bytes({1, 2, 3}));
        if (!c.error.empty()) {
            EXPECT_EQ(o.err, "zephyr: " + c.error + "\n");
        }
        EXPECT_EQ(o.status, c.error.empty() ? 2 : 1);
    }
    WriteAll(out_, {1, 2, 3});
    faults.writesUntilFailure = 0;
    Outcome o = Zephyr({"extract", good_, "2", out_});
    faults = {};
    EXPECT_EQ(o.status, 1);
    EXPECT_EQ(o.err, "zephyr: " + out_ + ": can't be written\n");
    EXPECT_EQ(ReadAll(out_), Bytes({1, 2, 3}));
    EXPECT_EQ(folder_.Names().size(), 5u);
}

TEST_F(Cli, PlacesThatTakeNoFile) {
    for (const Words& words : {Words{"save", good_, folder_.Path("")}, Words{"extract", good_, "2", folder_.Path("")},
                               Words{"save", good_, folder_.Path("none/out")}}) {
        Outcome o = Zephyr(words);
        EXPECT_EQ(o.status, 1);
        EXPECT_EQ(o.err, "zephyr: " + words.back() + ": can't be written\n");
    }
}

TEST_F(Cli, WrongUsage) {
    struct Case {
        Words words;
        const char* error;
    } const cases[] = {
        {{}, "zephyr: give a command (see zephyr --help)\n"},
        {{"paint"}, "zephyr: unknown command paint (see zephyr --help)\n"},
        {{""}, "zephyr: unknown command  (see zephyr --help)\n"},
        {{"list"}, "zephyr list: give one FILE (see zephyr list --help)\n"},
        {{"list", "a", "b"}, "zephyr list: give one FILE (see zephyr list --help)\n"},
        {{"list", "--jsn", "a"}, "zephyr list: unknown option --jsn (see zephyr list --help)\n"},
        {{"list", "--json=yes", "a"}, "zephyr list: option --json takes no value (see zephyr list --help)\n"},
        {{"save", "a"}, "zephyr save: give IN and OUT (see zephyr save --help)\n"},
        {{"save", "a", "b", "--owner"}, "zephyr save: option --owner needs a value (see zephyr save --help)\n"},
        {{"extract", "a", "1"}, "zephyr extract: give FILE, INDEX and OUT.bmp (see zephyr extract --help)\n"},
    };
    for (const Case& c : cases) {
        Outcome o = Zephyr(c.words);
        EXPECT_EQ(o.status, 2);
        EXPECT_EQ(o.err, c.error);
        EXPECT_EQ(o.out, "");
    }
}

TEST_F(Cli, HelpAndVersion) {
    std::string version;
    std::getline(std::ifstream(ZEPHYR_SOURCES "/VERSION"), version);
    EXPECT_EQ(Zephyr({"--version"}).out, "zephyr " + version + "\n");
    for (const char* command : {"", "list", "save", "extract"}) {
        Outcome o = Zephyr(*command ? Words{command, "x", "--help"} : Words{"--help"});
        EXPECT_EQ(o.status, 0);
        EXPECT_EQ(o.err, "");
        EXPECT_EQ(o.out.find("Usage: zephyr " + std::string(*command ? command : "COMMAND")), 0u) << command;
    }
    // Behind "--" everything is a file.
    Outcome o = Zephyr({"list", "--", "--help"});
    EXPECT_EQ(o.status, 1);
    EXPECT_EQ(o.err, "zephyr: --help: can't be opened\n");
}
