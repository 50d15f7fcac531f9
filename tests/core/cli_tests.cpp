// zephyr list, save and extract in the classic manner, and what all commands have in common: wrong words, failures and
// help.
#include <algorithm>
#include <cstring>
#include <fstream>
#include <sstream>

#include "cli/json.h"
#include "platform/faults.h"
#include "platform/identity.h"
#include "tests/support/cli_runner.h"
#include "tests/support/gif_bytes.h"

namespace {

class Cli : public testing::Test {
protected:
    Cli() {
        WriteAll(good_, GifBytes()
                            .Header("GIF87a", 9, 9, 0x81)
                            .Comment("\"caf\xE9\"\\\x7F")
                            .SmallImage()
                            .Extension(0xFF, "\x0BKELMORnb1.0", {"\1\0\2\0\2\0\2\0........\x80\0", 18})
                            .Add({0x3B}));
        WriteAll(cut_, GifBytes().Header("GIF89a", 9, 9, 0x81).Comment("x").Add({0x2C, 0}));
        WriteAll(open_, GifBytes().Header("GIF89a", 9, 9, 0x81).Comment("x"));
        WriteAll(text_, GifBytes().Text("no picture at all, only text"));
        WriteAll(out_, {1, 2, 3});
    }

    TempFolder folder_;
    std::string good_ = folder_.Path("good.gif"), cut_ = folder_.Path("cut.gif"), open_ = folder_.Path("open.gif"),
                text_ = folder_.Path("text.gif"), out_ = folder_.Path("out"), none_ = folder_.Path("none.gif");
};

TEST_F(Cli, ListPrintsLinesOrJson) {
    CliRun lines = RunClassic({"list", good_}), json = RunClassic({"list", "--json", good_});
    EXPECT_EQ(lines.out,
              "HEADER GIF87a Screen (9 x 9)\nCOMMENT \"caf\xC3\xA9\"\\\\x7f\nIMAGE \xE2\x82\xAC 2 x 2, 4 colours\n"
              "BLOCK NAMES\n");
    EXPECT_EQ(lines.err + json.err, "");
    const std::string expected =
        R"-({"result": 1, "complete": true, "ended": "trailer", "blocks": [{"position": 0, "kind": 1, "kindName": "HEADER", )-"
        R"-("line": "HEADER GIF87a Screen (9 x 9)", )-"
        R"("descriptor": "4749463837610900090081000000000000", "dataLength": 0, "palette": "000000010203020406030609)" +
        std::string(1512, '0') +
        "\"}, {\"position\": 1, \"kind\": 6, \"kindName\": \"COMMENT\", \"line\": \"COMMENT "
        "\\\"caf\xC3\xA9\\\"\\\\\\u007f\","
        R"( "descriptor": "0000000000000000000000000000000000", "dataLength": 8, "data": "22636166e9225c7f"}, )"
        R"({"position": 2, "kind": 2, "kindName": "IMAGE", "line": "IMAGE € 2 x 2, 4 colours", )"
        R"("descriptor": "0000000002000200010000000000000000", "dataLength": 0, "name": "€", )"
        R"("image": {"width": 2, "height": 2, "bitCount": 4}}, {"position": 3, "kind": 8, "kindName": "BLOCK NAMES", )"
        R"("line": "BLOCK NAMES", "descriptor": "0b4b454c4d4f526e62312e300000000000", "dataLength": 18, )"
        R"("data": "01000200020002002e2e2e2e2e2e2e2e8000"}]})"
        "\n";
    EXPECT_EQ(json.out, expected);
}

TEST_F(Cli, ListedLinesAreSafeToPrintAndLoseNothing) {
    // What a file may hold in a text, how the line shows it, and how JSON does. The first 0xFE of a line is ours.
    const std::tuple<std::string, std::string, std::string> cases[] = {
        {"a\x1B[2J\n", "a [2J ", "a [2J "},  // texts have blanks for control characters of the first 32
        {"b\x7F\x81\x8D\x8F\x90\x9D", "b\\x7f\\x81\\x8d\\x8f\\x90\\x9d", "b\\u007f\\u0081\\u008d\\u008f\\u0090\\u009d"},
        {"\xFE\xFE!\xC2\x80", "\xC3\xBE\xC3\xBE!\xC3\x82\xE2\x82\xAC", "\xC3\xBE\xC3\xBE!\xC3\x82\xE2\x82\xAC"},
        {"\\x1b", "\\x1b", "\\\\x1b"},
    };
    const std::string file = folder_.Path("odd.gif");
    for (const auto& [text, line, json] : cases) {
        GifBytes bytes = GifBytes().Header("GIF\x1B\xFE\n", 1, 1, 0);
        bytes.Extension(0x01, std::string("\x0C\0\0\0\0\0\0\0\0\0\0\0\0", 13), text).SmallImage(0x81);
        bytes.Extension(0xFF, "\x0BKELMORnb1.0", {"\1\0\4\0\2\0\2\0........\x1B\n\xFE\0", 20});
        WriteAll(file, bytes.Extension(0xFF, "\x0BXM\x1B\x07\x9D\xFE\xFE\xFEXMP", "").Add({0x3B}));
        const std::string lines = RunClassic({"list", file}).out, listed = RunClassic({"list", "--json", file}).out;
        EXPECT_EQ(lines, "HEADER GIF\\x1b\xC3\xBE\\x0a Screen (1 x 1)\nPLAIN TEXT " + line +
                             "\nIMAGE \\x1b\\x0a\xC3\xBE 2 x 2, 4 colours\nBLOCK NAMES\n"
                             "APPLICATION-DEFINED (Type: XM\\x1b\\x07\\x9d\xC3\xBE\xC3\xBE\xC3\xBE)\n");
        EXPECT_NE(listed.find("\"PLAIN TEXT " + json + "\""), std::string::npos) << listed;
        EXPECT_NE(listed.find("\"name\": \"\\u001b\\u000a\xC3\xBE\""), std::string::npos) << listed;
        const std::string printed = lines + listed;
        EXPECT_TRUE(std::none_of(printed.begin(), printed.end(),
                                 [](char c) { return c == 127 || (c != '\n' && c >= 0 && c < 32); }));
    }
    EXPECT_EQ(RunClassic({"list", "no\x1B[2J\xC2\x9B\n"}).err,
              "zephyr: no\\x1b[2J\\x9b\\x0a: can't be opened: there is no such file\n");
    EXPECT_EQ(RunClassic({"list", "--\x1B"}).err, "zephyr list: unknown option --\\x1b (see zephyr list --help)\n");
}

TEST_F(Cli, JsonIsReadableWhateverFilesAreCalled) {
    const std::pair<std::string, const char*> cases[] = {
        {"caf\xC3\xA9 \xE2\x82\xAC \xF0\x9F\x98\x80", "\"caf\xC3\xA9 \xE2\x82\xAC \xF0\x9F\x98\x80\""},
        {"caf\xE9\"\\", R"("caf\ufffd\"\\")"},
        {"\xE2\x82", R"("\ufffd\ufffd")"},
        {"\xED\xA0\x80.", R"("\ufffd\ufffd\ufffd.")"},
        {"\xC0\x80\xC2\x9B\n", R"("\ufffd\ufffd\u009b\u000a")"},
    };
    for (const auto& [name, json] : cases) EXPECT_EQ(JsonText(name), json);
}

TEST_F(Cli, JsonTellsPalettesByTheirFlagAndAllNumbers) {
    const std::string file = folder_.Path("many.gif");
    GifBytes bytes = GifBytes().Text("GIF89a").Word(1).Word(1).Add({0x80, 0, 0}).Repeat(0, 6).SmallImage(0x82);
    bytes.SmallImage();
    for (int i = 3; i <= 65536; ++i) bytes.Control(0);
    WriteAll(file, bytes.Add({0x3B}));
    const std::string json = RunClassic({"list", "--json", file}).out;
    auto blockAt = [&](const std::string& number) {
        const size_t at = json.find("{\"position\": " + number + ",");
        return at == std::string::npos ? "" : json.substr(at, json.find("{\"position\"", at + 1) - at);
    };
    const std::string black = "\"palette\": \"" + std::string(1536, '0') + "\"";
    EXPECT_NE(blockAt("0").find(black), std::string::npos) << "all black, and still there";
    EXPECT_NE(blockAt("1").find("\"palette\": \"000000010203"), std::string::npos);
    EXPECT_EQ(blockAt("2").find("palette"), std::string::npos);
    EXPECT_NE(blockAt("65536").find("CONTROL"), std::string::npos) << "a number of more than 16 bits";
    WriteAll(file, GifBytes().Header("GIF89a", 1, 1, 0).Add({0x3B}));
    EXPECT_EQ(RunClassic({"list", "--json", file}).out.find("palette"), std::string::npos);
}

TEST_F(Cli, ListTellsHowLoadsEnd) {
    const std::tuple<std::string, int, const char*, const char*, const char*> cases[] = {
        {cut_, 1, "{\"result\": 0, \"complete\": false, \"ended\": \"failure\", \"blocks\": [{\"position\": 0, ",
         "HEADER GIF89a Screen (9 x 9)\nCOMMENT x\n", "corrupt GIF data, or not enough memory"},
        {text_, 1, "{\"result\": 2, \"complete\": false, \"ended\": \"no GIF file\", \"blocks\": []}\n", "",
         "not a GIF file"},
        {none_, 1, "{\"result\": 0, \"complete\": false, \"ended\": \"not opened\", \"blocks\": []}\n", "",
         "can't be opened: there is no such file"},
        {folder_.Path(""), 1, "{\"result\": 0, \"complete\": false, \"ended\": \"not opened\", \"blocks\": []}\n", "",
         "can't be opened: it is a folder"},
        {open_, 0, "{\"result\": 1, \"complete\": false, \"ended\": \"end of file\", \"blocks\": [{",
         "HEADER GIF89a Screen (9 x 9)\nCOMMENT x\n",
         "note: loading ended before the trailer; blocks behind that point are not in the document"},
    };
    for (const auto& [file, status, json, lines, error] : cases) {
        CliRun asLines = RunClassic({"list", file}), asJson = RunClassic({"list", file, "--json"});
        EXPECT_EQ(asLines.status, status);
        EXPECT_EQ(asJson.status, status);
        EXPECT_EQ(asLines.out, lines);
        EXPECT_EQ(asJson.out.substr(0, strlen(json)), json);
        EXPECT_EQ(asJson.out.find("\"position\": 1") != std::string::npos, *lines != 0) << "blocks without numbers";
        EXPECT_EQ(asLines.err, "zephyr: " + file + ": " + error + "\n");
        EXPECT_EQ(asJson.err, asLines.err);
    }
}

TEST_F(Cli, StrictRefusesWhatIsNotWhole) {
    GifBytes start = GifBytes().Header("GIF89a", 2, 2, 0x81).SmallImage();
    const std::tuple<std::string, Bytes, std::string> files[] = {
        {folder_.Path("whole"), GifBytes(start).Add({0x3B}), ""},
        {folder_.Path("end"), start, "end of file"},
        {folder_.Path("byte"), GifBytes(start).Add({0, 0x3B}), "unknown byte"},
        {folder_.Path("data"), GifBytes(start).Extension(0xFF, "\x0BXMP DataXMP", std::string(0x3B, 'd')).Add({0x3B}),
         "application block"},
    };
    for (const auto& [file, content, end] : files) {
        WriteAll(file, content);
        const std::string json = RunClassic({"list", "--json", file}).out, isComplete = end.empty() ? "true" : "false";
        const std::string ended = end.empty() ? "trailer" : end;
        EXPECT_NE(json.find("\"complete\": " + isComplete + ", \"ended\": \"" + ended + "\", "), std::string::npos)
            << json;
        const Words commands[] = {{"list", file},
                                  {"save", file, out_},
                                  {"extract", file, "1", out_},
                                  {"remap", file, "1", out_, "--palette=6"},
                                  {"insert", file, out_, "--at=0", "--kind=comment"},
                                  {"delete", file, out_, "1"},
                                  {"set", file, out_, "1", "left=0"}};
        for (Words words : commands) {
            SCOPED_TRACE(words[0] + " " + file);
            EXPECT_EQ(RunClassic(words).status, kExitDone);
            WriteAll(out_, {1, 2, 3});
            words.emplace_back("--strict");
            CliRun run = RunClassic(words);
            EXPECT_EQ(run.status, end.empty() ? kExitDone : kExitFailed);
            EXPECT_EQ(run.out.empty(), words[0] != "list");
            EXPECT_EQ(ReadAll(out_) == Bytes({1, 2, 3}), !end.empty() || words[0] == "list");
            EXPECT_EQ(run.err, end.empty() ? ""
                                           : "zephyr: " + file + ": loading ended before the trailer (" + end +
                                                 "), which --strict does not allow\n");
        }
    }
}

TEST_F(Cli, NoPictureIsBlankForWantOfMemory) {
    WriteAll(good_, GifBytes().Header("GIF89a", 9, 9, 0x81).SmallImage().Add({0x3B}));
    int told = 0;
    for (long n = 0; n < 10; ++n) {
        faults.allocationsUntilFailure = n;
        CliRun run = RunClassic({"list", good_});
        faults = {};
        EXPECT_EQ(run.status == 0, run.err.empty());
        told += run.err == "zephyr: " + good_ + ": not enough memory for its pictures\n";
    }
    EXPECT_EQ(told, 1);
}

TEST_F(Cli, SaveFitsTheScreenAndSignsTheFile) {
    GifBytes document = GifBytes().Header("GIF89a", 2, 2, 0x81).Comment("\"caf\xE9\"\\\x7F").SmallImage(1);
    auto signedBy = [&](const std::string& names) {
        return GifBytes(document).Comment("FILE IDENTITY\r\nCreated or modified by\r\n" + names).Add({0x3B});
    };
    const Identity system = GetUserIdentity();  // empty where there is no registry
    EXPECT_EQ(RunClassic({"save", good_, out_}).status, 0);
    EXPECT_EQ(ReadAll(out_), signedBy(system.owner + "\r\n" + system.organisation));
    EXPECT_EQ(RunClassic({"save", good_, out_, "--owner", "", "--organisation="}).status, 0);
    EXPECT_EQ(ReadAll(out_), signedBy("\r\n"));
    const std::string longest(259, 'n');
    EXPECT_EQ(RunClassic({"save", good_, out_, "--owner=" + longest, "--organisation=" + longest}).status, 0);
    EXPECT_EQ(ReadAll(out_), signedBy(longest + "\r\n" + longest));
    CliRun named = RunClassic({"save", "--owner=Zo\xC3\xA9", good_, "--organisation", "K", out_});
    EXPECT_EQ(named.out + named.err, "");
    EXPECT_EQ(ReadAll(out_), signedBy("Zo\xE9\r\nK"));
    EXPECT_EQ(RunClassic({"save", "--owner=Z", good_, out_}).status, 0);
    EXPECT_EQ(ReadAll(out_), signedBy("Z\r\n" + system.organisation)) << "each name for itself";
}

TEST_F(Cli, ExtractWritesABmpFile) {
    EXPECT_EQ(RunClassic({"extract", good_, "2", out_}).status, 0);
    GifBytes expected = GifBytes().Text("BM").Add({126, 0, 0, 0, 0, 0, 0, 0, 118, 0, 0, 0, 40, 0, 0, 0, 2, 0, 0, 0});
    expected.Add({2, 0, 0, 0, 1, 0, 4, 0, 0, 0, 0, 0, 8, 0, 0, 0}).Repeat(0, 8).Add({16, 0, 0, 0, 16, 0, 0, 0});
    for (int i = 0; i < 16; ++i) expected.Add({i < 4 ? 3 * i : 0, i < 4 ? 2 * i : 0, i < 4 ? i : 0, 0});
    expected.Add({0x30, 0, 0, 0, 0x12, 0, 0, 0});
    EXPECT_EQ(ReadAll(out_), expected);
}

TEST_F(Cli, FailuresKeepAnExistingOutput) {
    std::string place = folder_.Path(""), nowhere = folder_.Path("none/out"), noBlock = "; they are numbered 0 to 3";
    const std::pair<Words, std::string> cases[] = {
        {{"save", text_, out_}, text_ + ": not a GIF file"},
        {{"save", good_, place}, place + ": can't be written: it is a folder"},
        {{"save", good_, nowhere}, nowhere + ": can't be written: there is no such folder"},
        {{"extract", good_, "1", out_}, good_ + ": block 1 is not an image"},
        {{"extract", good_, "4", out_}, good_ + ": there is no block 4" + noBlock},
        {{"remap", good_, "4294967295", out_, "--palette=6"}, good_ + ": there is no block 4294967295" + noBlock},
        {{"set", good_, out_, "4", "delay=1"}, good_ + ": there is no block 4" + noBlock},
        {{"delete", good_, out_, "0", "4"}, good_ + ": there is no block 4" + noBlock},
        {{"insert", good_, out_, "--at=4", "--kind=control"}, good_ + ": there is no block 4" + noBlock},
        {{"extract", good_, "2", place}, place + ": can't be written: it is a folder"},
    };
    for (const auto& [words, error] : cases) {
        CliRun run = RunClassic(words);
        EXPECT_EQ(run.status, 1);
        EXPECT_EQ(run.out, "");
        EXPECT_EQ(run.err, "zephyr: " + error + "\n");
        EXPECT_EQ(ReadAll(out_), Bytes({1, 2, 3}));
    }
    EXPECT_EQ(folder_.Names().size(), 5u) << "something was left behind";
}

TEST_F(Cli, WrongWordsAreToldBeforeAnythingIsRead) {
    const std::string tooLong(260, 'n');
    const std::pair<Words, const char*> cases[] = {
        {{}, "give a command"},
        {{"paint"}, "unknown command paint"},
        {{"list", "--jsn", "a"}, "unknown option --jsn"},
        {{"list", "--json=yes", "a"}, "option --json takes no value"},
        {{"save", "a", "b", "--owner"}, "option --owner needs a value"},
        {{"remap", "a", "1", "b", "--palette", "10"}, "give --palette and a number of 0 to 9"},
        {{"insert", "a", "b", "--at", "0"}, "give --kind and image, control, comment, plaintext or loop"},
        {{"insert", "a", "b", "--at=0", "--kind=image"}, "give at least one PICTURE"},
        {{"insert", "a", "b", "c", "--at=0", "--kind=comment"}, "a PICTURE is for --kind image only"},
        {{"insert", "a", "b", "c", "--at=0", "--kind=image", "--remap", "--dither"},
         "give one of --remap, --dither and --keep"},
        {{"set", "a", "b", "0"}, "give IN, OUT, SELECTION and at least one FIELD=VALUE"},
        {{"set", "a", "b", "0", "width=1", "=1"}, "give FIELD=VALUE, not =1"},
        {{"extract", "a", "abc", "b"}, "give blocks as in 7, 3-last, comment, image:0 or frame:2-4, not abc"},
        {{"extract", "a", "-1", "b"}, "unknown option -1"},
        {{"extract", "a", "--", "-1", "b"}, "give blocks as in 7, 3-last, comment, image:0 or frame:2-4, not -1"},
        {{"remap", "a", "99999999999", "b", "--palette=6"},
         "give blocks as in 7, 3-last, comment, image:0 or frame:2-4, not 99999999999"},
        {{"set", "a", "b", "2x", "width=1"}, "give blocks as in 7, 3-last, comment, image:0 or frame:2-4, not 2x"},
        {{"delete", "a", "b", "1", ""}, "give blocks as in 7, 3-last, comment, image:0 or frame:2-4, not "},
        {{"insert", "a", "b", "--kind=loop", "--at", "-1"},
         "give blocks as in 7, 3-last, comment, image:0 or frame:2-4, not -1"},
        {{"save", "a", "b", "--owner=\xE6\x97\xA5"}, "--owner takes only characters that Windows-1252 has"},
        {{"set", "a", "b", "0", "width=1", "--owner", "\xFF"}, "--owner takes only characters that Windows-1252 has"},
        {{"delete", "a", "b", "1", "--organisation=\xC4\x80"},
         "--organisation takes only characters that Windows-1252 has"},
        {{"insert", "a", "b", "--kind=loop", "--owner", tooLong}, "--owner takes at most 259 characters"},
        {{"build", "-o", "x", "a", "b", "--owner", tooLong}, "--owner takes at most 259 characters"},
        {{"build", "-o", "x", "a"}, "give at least two files"},
        {{"build", "-o", "x", "--match", "best", "a", "b"}, "--match takes super, first, photo, drawn or sixteen"},
        {{"build", "-o", "x", "--delay", "65536", "a", "b"}, "--delay takes a number from 0 to 65535"},
    };
    for (const auto& [words, error] : cases) {
        CliRun run = RunCli(words);
        bool ofTheProgram = strstr(error, "command");
        std::string name = ofTheProgram ? "zephyr" : "zephyr " + words[0];
        EXPECT_EQ(run.status, 2);
        EXPECT_EQ(run.out, "");
        EXPECT_EQ(run.err, name + ": " + error + " (see " + name + " --help)\n");
    }
}

TEST_F(Cli, HelpAndVersion) {
    std::string version;
    std::getline(std::ifstream(ZEPHYR_SOURCES "/VERSION"), version);
    EXPECT_EQ(RunCli({"--version"}).out, "zephyr " + version + "\n");
    for (const char* command :
         {"list",   "diff",    "save", "extract", "remap", "insert", "delete", "set",   "move", "copy",
          "timing", "reverse", "thin", "cut",     "build", "repair", "frames", "check", "cost", "advise"}) {
        const std::string help = RunCli({command, "x", "--help"}).out;
        EXPECT_EQ(help.find("Usage: zephyr " + std::string(command)), 0u) << command;
        EXPECT_EQ(RunCli({"help", command}).out + RunCli({command, "-h"}).out, help + help);
        std::istringstream lines(help);
        for (std::string line; std::getline(lines, line);) EXPECT_LE(line.size(), 80u) << line;
    }
    for (const char* word : {"--help", "-h", "help"}) EXPECT_EQ(RunCli({word}).out.find("Usage: zephyr COMMAND"), 0u);
    EXPECT_EQ(RunCli({"list", "--", "--help"}).err, "zephyr: --help: can't be opened: there is no such file\n");
}

}  // namespace
