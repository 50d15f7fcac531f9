// The files of commands that change documents: several in place, standard input and output, and none at all.
#include <cstdio>

#include "tests/support/cli_runner.h"
#include "tests/support/row_document.h"

using namespace std::string_literals;

namespace {

// 0 HEADER, 1 CONTROL, 2 IMAGE, 3 COMMENT.
class CliFiles : public testing::Test {
protected:
    void SetUp() override {
        GifBytes bytes = GifBytes().Header("GIF89a", 2, 2, 0x81).Control(9).SmallImage();
        whole_ = bytes.Comment("words").Add({0x3B});
        for (const char* name : {"a.gif", "b.gif", "-c.gif"}) WriteAll(Path(name), whole_);
        WriteAll(Path("text.gif"), GifBytes().Text("no picture at all"));
        WriteAll(Path("bare.gif"), GifBytes().Header("GIF89a", 2, 2, 0).Add({0x3B}));
    }

    std::string Path(const std::string& name) const { return folder_.Path(name); }

    // Names that end in .gif are those of files in the folder.
    CliRun Run(Words words) const {
        for (std::string& word : words)
            if (word.ends_with(".gif")) word = Path(word);
        return RunCli(words);
    }

    int DelayOf(const std::string& name) const {
        LoadedGif list(ReadAll(Path(name)), Manner::kWhole);
        const int control = FindBlock(list, kControlBlock);
        return control < 0 ? -1 : GetControlFields(list.blocks[static_cast<size_t>(control)]).delay;
    }

    GifBytes whole_;
    TempFolder folder_;
};

}  // namespace

TEST_F(CliFiles, SeveralAreChangedInPlaceAndAFailureLeavesTheOthersAlone) {
    CliRun run = Run({"set", "--in-place", "control", "delay=5", "--", "a.gif", "text.gif", "none.gif", "bare.gif",
                      "b.gif", "-c.gif"});
    EXPECT_EQ(run.status, kExitFailed);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err, "zephyr: " + Path("text.gif") + ": not a GIF file\nzephyr: " + Path("none.gif") +
                           ": can't be opened: there is no such file\nzephyr: " + Path("bare.gif") +
                           ": there is no control block\n");
    for (const char* name : {"a.gif", "b.gif", "-c.gif"}) EXPECT_EQ(DelayOf(name), 5) << name;
    EXPECT_EQ(ReadAll(Path("text.gif")), GifBytes().Text("no picture at all"));
    EXPECT_EQ(folder_.Names().size(), 5u) << "something was left behind";

    const std::tuple<Words, const char*> cases[] = {
        {{"delete", "--in-place", "comment", "--keep-looks", "--", "a.gif"}, "132"},
        {{"insert", "--in-place", "--kind=comment", "--at=last", "--", "a.gif"}, "1326"},
        {{"move", "last", "--at=0", "--in-place", "--", "a.gif"}, "1632"},
        {{"copy", "frame", "--at=last", "--from", "b.gif", "--in-place", "--", "a.gif"}, "163232"},
        {{"reverse", "--in-place", "--", "a.gif"}, "163232"},
        {{"thin", "--every=2", "--in-place", "a.gif", "b.gif"}, "1632"},
        {{"cut", "0", "--in-place", "--", "a.gif"}, "1632"},
        {{"timing", "--delay=8", "--in-place", "--", "a.gif"}, "1632"},
        {{"repair", "--in-place", "b.gif", "a.gif"}, "1632"},
        {{"save", "--in-place", "--owner=x", "a.gif"}, "16326"},
    };
    for (const auto& [words, kinds] : cases) {
        run = Run(words);
        EXPECT_EQ(run.status, kExitDone) << words[0] << run.err;
        EXPECT_EQ(KindsOf(LoadedGif(ReadAll(Path("a.gif")), Manner::kWhole)), kinds) << words[0];
    }
    EXPECT_EQ(DelayOf("a.gif"), 8);
}

TEST_F(CliFiles, WordsThatLackFilesOrMixThem) {
    const std::pair<Words, const char*> cases[] = {
        {{"set", "--in-place", "control", "delay=5", "a.gif"}, "give the files behind \"--\", SELECTION and at least"},
        {{"set", "--in-place", "control", "--", "a.gif"}, "give the files, SELECTION and at least one FIELD=VALUE"},
        {{"delete", "--in-place", "--", "a.gif"}, "give the files and the blocks to be deleted"},
        {{"reverse", "--in-place", "a.gif"}, "give the files behind \"--\""},
        {{"save", "--in-place"}, "give the files behind \"--\""},
        {{"save", "--in-place", "a.gif", "--", "b.gif"}, "give the files behind \"--\""},
        {{"repair", "--in-place", "a.gif", "-"}, "standard input can't be changed in place"},
        {{"save", "a.gif", "b.gif", "x"}, "give IN and OUT"},
        {{"set", "--in-place", "0", "data=@-", "--", "a.gif", "b.gif"}, "standard input can be read only once"},
        {{"set", "-", "b.gif", "0", "data=@-"}, "standard input can be read only once"},
        {{"copy", "-", "b.gif", "1", "--at=0", "--from", "-"}, "standard input can be read only once"},
    };
    for (const auto& [words, told] : cases) {
        const CliRun run = Run(words);
        EXPECT_EQ(run.status, kExitUsage) << told;
        EXPECT_NE(run.err.find(told), std::string::npos) << run.err;
        EXPECT_EQ(ReadAll(Path("a.gif")), whole_) << told;
    }
}

TEST_F(CliFiles, ADryRunPrintsWhatWouldChangeAndWritesNothing) {
    const std::string changed = "1 -> 1  changed: CONTROL (delay 5 1/100ths of a second)\n        delay: 9 -> 5\n";
    const std::tuple<Words, std::string, int> cases[] = {
        {{"set", "--dry-run", "a.gif", "out.gif", "1", "delay=5"}, changed, kExitDone},
        {{"set", "--dry-run", "a.gif", "out.gif", "1", "delay=9"}, "nothing would change\n", kExitDone},
        {{"delete", "--dry-run", "a.gif", "-", "comment"}, "3 -> -  taken out: COMMENT words\n", kExitDone},
        {{"set", "--dry-run", "--in-place", "control", "delay=5", "--", "b.gif", "bare.gif", "a.gif"},
         Path("b.gif") + ":\n" + changed + Path("a.gif") + ":\n" + changed,
         kExitFailed},
        {{"save", "--dry-run", "a.gif", "out.gif", "--owner=Z"}, "- -> 4  added: COMMENT FILE IDENTITY", kExitDone},
    };
    for (const auto& [words, printed, status] : cases) {
        const CliRun run = Run(words);
        EXPECT_EQ(run.out.substr(0, printed.size()), printed) << run.err;
        EXPECT_EQ(run.status, status) << printed;
        for (const char* name : {"a.gif", "b.gif"}) EXPECT_EQ(ReadAll(Path(name)), whole_) << words[0];
        EXPECT_FALSE(FileExists(Path("out.gif"))) << words[0];
    }
}

TEST_F(CliFiles, StandardInputAndOutputPassDocumentsAndPictures) {
    const std::pair<Words, Bytes> cases[] = {
        {{"save", "-", "-"}, whole_},
        {{"delete", "-", "-", "comment"}, Bytes(whole_.begin(), whole_.end() - 10)},
        {{"extract", "-", "3", "-"}, {}},
    };
    for (const auto& [words, start] : cases) {
        ASSERT_NE(freopen(Path("a.gif").c_str(), "rb", stdin), nullptr);
        const CliRun run = RunCli(words);
        const bool isDone = !start.empty();
        EXPECT_EQ(run.status, isDone ? kExitDone : kExitFailed);
        EXPECT_EQ(run.out.substr(0, start.size()), std::string(start.begin(), start.end()));
        EXPECT_EQ(run.err, isDone ? "" : "zephyr: standard input: block 3 is not an image\n");
    }
    const CliRun picture = Run({"extract", "a.gif", "image:0", "-"});
    ASSERT_EQ(Run({"extract", "a.gif", "2", Path("out.bmp")}).status, kExitDone);
    const Bytes file = ReadAll(Path("out.bmp"));
    EXPECT_EQ(picture.out, std::string(file.begin(), file.end()));
}

TEST_F(CliFiles, SeveralPicturesGoToFilesOfTheirNumbers) {
    WriteAll(Path("many.gif"),
             GifBytes().Header("GIF89a", 2, 2, 0x81).SmallImage().Comment("c").SmallImage().Add({0x3B}));
    EXPECT_EQ(Run({"extract", "many.gif", "image", Path("p%02d.png")}).status, kExitDone);
    EXPECT_EQ(Run({"remap", "many.gif", "image:1", Path("r%d.bmp"), "--palette=9"}).status, kExitDone);
    EXPECT_EQ(Run({"extract", "many.gif", "1", Path("100%.bmp")}).status, kExitDone);
    for (const char* name : {"p01.png", "p03.png", "r3.bmp", "100%.bmp"}) EXPECT_TRUE(FileExists(Path(name))) << name;
    const CliRun run = Run({"extract", "many.gif", "image", Path("one.png")});
    EXPECT_EQ(run.err, "zephyr: " + Path("many.gif") + ": for 2 blocks give an OUT with %d in it, for their numbers\n");
    EXPECT_FALSE(FileExists(Path("one.png")));
}
