// What would make files smaller: zephyr advise, the fields of zephyr set that it asks for, and what they are made of.
#include "size/advice.h"

#include <filesystem>
#include <sstream>

#include "animation/stage.h"
#include "size/block_sizes.h"
#include "tests/support/cli_runner.h"
#include "tests/support/operations.h"

using namespace std::string_literals;

namespace {

constexpr uint64_t kMostPixels = 200000;  // of files whose frames are compared
constexpr size_t kMostTried = 6;          // edits of a file

// SmallImage once more, in codes of pixels of `depth` bits that do not get wider.
GifBytes CodedImage(int packed, unsigned depth) {
    const unsigned clearCode = 1u << depth;
    CodeBits bits;
    for (unsigned code : {clearCode, 1u, 2u, 3u, 0u, clearCode + 1}) bits.Put(code, depth + 1);
    GifBytes image = GifBytes().ImageHead(2, 2, packed).Add({static_cast<int>(depth)});
    return image.Add({static_cast<int>(bits.Packed().size())}).Add(bits.Packed()).Add({0});
}

// The canvases of all frames as browsers show them, one behind the other; none of a file that has too many pixels.
std::vector<uint32_t> CanvasesOf(const BlockList& list) {
    Animation animation;
    Stage stage;
    std::vector<uint32_t> canvases;
    EXPECT_TRUE(animation.Open(list, Texts::kLeftOut));
    if (animation.Screen().Pixels() * (animation.Frames().size() + 1) > kMostPixels) return {};
    EXPECT_TRUE(stage.Open(animation, kKeptCanvasBytes));
    for (uint32_t frame = 0; frame < animation.Frames().size(); ++frame) {
        EXPECT_TRUE(stage.Show(frame));
        canvases.insert(canvases.end(), stage.Canvas().pixels, stage.Canvas().pixels + animation.Screen().Pixels());
    }
    return canvases;
}

// The words behind "zephyr" of a printed command without quotes, with `out` for OUT.
Words WordsOf(const std::string& command, const std::string& out) {
    std::istringstream text(command);
    Words words;
    for (std::string word; text >> word;) words.push_back(word == "OUT" ? out : word);
    words.erase(words.begin());
    return words;
}

std::string Shown(const Advice& advice) {
    return std::to_string(advice.gain) + " " + advice.verb + " " + advice.blocks + " " + advice.value;
}

class Advising : public testing::Test {
protected:
    // All advice for the file, a line each.
    static std::string For(const GifBytes& bytes) {
        LoadedGif file(GifBytes(bytes).Add({0x3B}), Manner::kWhole);
        std::vector<Advice> advice;
        EXPECT_TRUE(FindAdvice(file, file.report, &advice));
        std::string all;
        for (const Advice& edit : advice) all += Shown(edit) + "\n";
        return all;
    }

    CliRun Set(const Words& words) const {
        Words all = {"set", in_, out_};
        all.insert(all.end(), words.begin(), words.end());
        return RunCli(all);
    }

    TempFolder folder_;
    std::string in_ = folder_.Path("in.gif"), out_ = folder_.Path("out.gif");
};

}  // namespace

TEST_F(Advising, TellsThePriceOfEachEdit) {
    const GifBytes image = GifBytes().SmallImage();
    const GifBytes dear = CodedImage(0, 8), interlaced = CodedImage(0x40, 8);
    const std::tuple<const char*, GifBytes, std::string> cases[] = {
        {"nothing", Start().Add(image), ""},
        {"encode anew", Start().Add(dear), "4 set image:0 encoding=new\n"},
        {"two of three", Start().Add(dear).Add(image).Add(dear),
         "8 set image:0,image:2 encoding=new\n4 set image:0 encoding=new\n4 set image:2 encoding=new\n"},
        {"interlaced", Start().Add(interlaced), "4 set image:0 interlaced=no\n4 set image:0 encoding=new\n"},
        {"the global palette once more", Start().SmallImage(0x81),
         "12 set image:0 palette=global\n12 set header colours=0\n"},
        {"too large a local palette", Start().SmallImage(0x84),
         "96 set image:0 palette=global\n84 set image:0 colours=4\n"
         "12 set header colours=0\n"},
        {"too large a global palette", Start(0x85).Add(image), "180 set header colours=4\n"},
        {"a text that uses it", Start(0x85).Add(image).Extension(1, "\x0C\0\0\0\0\1\0\1\0\1\1\x20\1"s, "x"),
         "18 delete plaintext \n"},
        {"comments", Start().Comment("abc").Add(image).Comment("d"), "12 delete comment \n"},
        {"loops and profiles stay",
         Start()
             .Extension(0xFF,
                        "\x0B"
                        "ANIMEXTS1.0",
                        "\1\0\0"s)
             .Extension(0xFF, "\x0BNETSCAPE2.0", "\1\0\0\0"s)
             .Extension(0xFF, "\x0BICCRGBG1012", "profile")
             .Add(image)
             .Extension(0xFF, "\x0BSOMEBODY1.0", "1"),
         "17 delete 5 \n"},
        {"unknown", Start().Add(image).Extension(0x77, "", "?"), "5 delete unknown \n"},
        {"damaged", Start(0x85).ImageHead(2, 2, 0x42).Add({8, 3, 0, 3, 8, 0}), ""},
        {"stray bytes go with a block", Start().Add(image).Add({0, 0}).Comment("a").Add(image), "7 delete comment \n"},
    };
    for (const auto& [what, bytes, advice] : cases) EXPECT_EQ(For(bytes), advice) << what;
}

TEST_F(Advising, ItsCommandsSaveWhatTheyPromiseAndShowTheSame) {
    size_t tried = 0;
    for (const auto& entry : std::filesystem::directory_iterator(TEST_DATA)) {
        SCOPED_TRACE(entry.path().filename().string());
        const Bytes bytes = ReadAll(entry.path().string());
        LoadedGif file(bytes, Manner::kWhole);
        std::vector<Advice> advice;
        if (file.result != kReadDone) continue;
        ASSERT_TRUE(FindAdvice(file, file.report, &advice));
        if (advice.empty()) continue;
        WriteAll(in_, bytes);
        const std::vector<uint32_t> canvases = CanvasesOf(file);
        if (advice.size() > kMostTried) advice.resize(kMostTried);
        for (const Advice& edit : advice) {
            SCOPED_TRACE(Shown(edit));
            EXPECT_EQ(
                RunCli(WordsOf("zephyr " + edit.verb + " " + in_ + " OUT " + edit.blocks + " " + edit.value, out_))
                    .status,
                kExitDone);
            const Bytes smaller = ReadAll(out_);
            EXPECT_EQ(smaller.size() + edit.gain, bytes.size());
            LoadedGif after(smaller, Manner::kWhole);
            EXPECT_TRUE(CanvasesOf(after) == canvases);
            ++tried;
        }
    }
    EXPECT_GT(tried, 200u);
}

TEST_F(Advising, PalettesAreSharedWhereThePictureStays) {
    // Colour i of both palettes is (i, 2i, 3i); the local one is turned round by hand.
    GifBytes other = GifBytes().SmallImage(0x81);
    std::reverse(other.begin() + 10, other.begin() + 22);  // bytes, too: (9, 6, 3) and so on
    for (size_t at = 10; at < 22; at += 3) std::swap(other[at], other[at + 2]);
    const GifBytes kept = GifBytes().SmallImage(0x01);  // the packed byte has the global depth
    const std::tuple<const char*, GifBytes, GifBytes> cases[] = {
        {"equal: the codes stay", Start().SmallImage(0x81), Start().Add(kept)},
        {"larger: the codes stay", Start().Add({7}).SmallImage(0x87), Start().Add({7}).Add(kept)},
        {"none of its own", Start().SmallImage(), Start().SmallImage()},
    };
    for (const auto& [what, bytes, expected] : cases) {
        WriteAll(in_, bytes);
        EXPECT_EQ(Set({"image", "palette=global"}).status, kExitDone) << what;
        EXPECT_EQ(ReadAll(out_), expected) << what;
    }
    WriteAll(in_, Start().Add(other).Add({0x3B}));
    EXPECT_EQ(Set({"image", "palette=global"}).status, kExitDone);
    LoadedGif turned(ReadAll(out_), Manner::kWhole), before(ReadAll(in_), Manner::kWhole);
    EXPECT_EQ(PixelsOf(before.blocks[1]), "12 30");
    EXPECT_EQ(PixelsOf(turned.blocks[1]), "21 03");
    EXPECT_EQ(CanvasesOf(turned), CanvasesOf(before));

    // Where index 1 is transparent it stays, and no other pixel may come to it.
    WriteAll(in_, Start().Control(0, 1, 1).Add(other).Add({0x3B}));
    const CliRun refused = Set({"image", "palette=global"});
    EXPECT_EQ(refused.status, kExitFailed);
    EXPECT_NE(refused.err.find("palette wants all colours of the picture in the global palette\n"), std::string::npos)
        << refused.err;
}

TEST_F(Advising, FieldsOfColoursAndCodesKeepTheRest) {
    GifBytes small = GifBytes().SmallImage(0x83);
    small.erase(small.begin() + 10 + 12, small.begin() + 10 + 48);
    small[9] = 0x81;
    GifBytes moved = small;
    moved[1] = 3;
    const GifBytes stray = GifBytes().Add({0, 0}), comment = GifBytes().Comment("x");
    const std::tuple<Words, GifBytes> cases[] = {
        {{"image", "colours=4"}, Start(0x85).Add(stray).Add(small).Add(comment)},
        {{"image", "colours=4", "left=3"}, Start(0x85).Add(stray).Add(moved).Add(comment)},
        {{"image", "left=3", "colours=4"}, Start(0x85).Add(stray).Add(moved).Add(comment)},
        {{"0", "colours=2"}, Start(0x80).Add(stray).SmallImage(0x83).Add(comment)},
        {{"0", "colours=0"}, Start(0x05).Add(stray).SmallImage(0x83).Add(comment)},
        {{"0", "colours=64"}, Start(0x85).Add(stray).SmallImage(0x83).Add(comment)},
        {{"image", "palette=global", "encoding=new"}, Start(0x85).Add(stray).Add(CodedImage(5, 6)).Add(comment)},
    };
    WriteAll(in_, Start(0x85).Add(stray).SmallImage(0x83).Add(comment));
    for (const auto& [words, expected] : cases) {
        EXPECT_EQ(Set(words).status, kExitDone) << words.back();
        EXPECT_EQ(ReadAll(out_), expected) << words.back();
    }
}

TEST_F(Advising, FieldsOfColoursAndCodesRefuseWhatCanNotBe) {
    WriteAll(in_, Start().SmallImage().Add({0x2C, 0, 0, 0, 0, 2, 0, 2, 0, 0x80}).Repeat(1, 6).Add({12, 0}).Add({0x3B}));
    const std::tuple<Words, int, std::string> cases[] = {
        {{"0", "colours=3"}, kExitUsage, "colours wants 2, 4, 8, 16, 32, 64, 128, 256 or 0 for no palette"},
        {{"0", "colours=1"}, kExitUsage, "or 0 for no palette"},
        {{"2", "colours=0"}, kExitUsage, "colours wants 2, 4, 8, 16, 32, 64, 128 or 256"},
        {{"1", "colours=4"}, kExitFailed, "colours wants a palette of its own, which this image lacks\n"},
        {{"1", "palette=own"}, kExitUsage, "palette wants global"},
        {{"2", "palette=global"}, kExitFailed, "palette wants a picture that can be decoded\n"},
        {{"1", "encoding=old"}, kExitUsage, "encoding wants new"},
        {{"2", "encoding=new"}, kExitFailed, "encoding wants a picture that can be decoded\n"},
    };
    for (const auto& [words, status, message] : cases) {
        const CliRun run = Set(words);
        EXPECT_EQ(run.status, status) << message;
        EXPECT_NE(run.err.find(message), std::string::npos) << run.err;
        EXPECT_FALSE(FileExists(out_)) << message;
    }
}

TEST_F(Advising, IsPrintedWithCommandsToPaste) {
    const std::string path = folder_.Path("it's one.gif");
    WriteAll(path, Start().Comment(std::string(5000, 'x')).SmallImage(0x81).Add({0x3B}));
    std::string quoted = path;
    quoted.replace(quoted.find('\''), 1, "'\\''");
    const CliRun run = RunCli({"advise", path});
    EXPECT_EQ(run.status, kExitDone);
    const std::pair<const char*, const char*> lines[] = {
        {"-5,023 bytes: delete the comments (loses their texts)\n    zephyr delete ", " OUT comment\n"},
        {"-12 bytes: write all frames as small as they can be found\n    zephyr optimise ", " OUT\n"},
        {"-12 bytes: drop the own palette of image:0\n    zephyr set ", " OUT image:0 palette=global\n"},
        {"-12 bytes: drop the global palette, which nothing uses (loses the background colour)\n    zephyr set ",
         " OUT header colours=0\n"}};
    std::string all;
    for (const auto& [before, behind] : lines) all += before + ("'" + quoted + "'") + behind;
    EXPECT_EQ(run.out, all);
    const std::string json = RunCli({"advise", "--json", path}).out;
    EXPECT_NE(
        json.find("\"advice\": [{\"gain\": 5023, \"what\": \"delete the comments\", \"loses\": \"their texts\", "),
        std::string::npos)
        << json;
    WriteAll(path, Start().SmallImage().Add({0x3B}));
    EXPECT_NE(RunCli({"advise", path}).out.find("one.gif: no edit makes it smaller\n"), std::string::npos);
    EXPECT_EQ(
        RunCli({"advise", "--json", path}).out.substr(RunCli({"advise", "--json", path}).out.find(", \"advice\"")),
        ", \"advice\": []}\n");
}

TEST_F(Advising, PrintsTheBestOfManyAlike) {
    GifBytes bytes = Start();
    for (int i = 0; i < 30; ++i) bytes.SmallImage(0x81);
    WriteAll(in_, bytes.Add({0x3B}));
    const std::string out = RunCli({"advise", in_}).out;
    EXPECT_EQ(out.find("-360 bytes: drop the own palette of 30 images\n"), 0u) << out;
    EXPECT_NE(out.find("OUT image:0-29 palette=global\n"), std::string::npos) << out;
    EXPECT_NE(out.find("\n21 more like these, which --json tells\n"), std::string::npos) << out;
    EXPECT_NE(RunCli({"advise", "--json", in_}).out.find("OUT image:29 palette=global"), std::string::npos);
}

TEST_F(Advising, RefusesWrongWordsAndFiles) {
    EXPECT_EQ(RunCli({"advise"}).status, kExitUsage);
    EXPECT_EQ(RunCli({"advise", "--classic", in_}).status, kExitUsage);
    EXPECT_EQ(RunCli({"advise", in_}).status, kExitFailed);
    WriteAll(in_, Start().SmallImage());  // no trailer
    EXPECT_EQ(RunCli({"advise", in_}).status, kExitDone);
    EXPECT_EQ(RunCli({"advise", "--strict", in_}).status, kExitFailed);
}
