// zephyr optimise: its words, and what it prints and writes.
#include "gif/descriptor.h"
#include "gif/lzw_encoder.h"
#include "tests/support/cli_runner.h"
#include "tests/support/random_images.h"
#include "tests/support/test_blocks.h"

namespace {

// Three frames that show the same, and blocks of all kinds that can be taken out.
GifBytes Wasteful() {
    GifBytes bytes = GifBytes().Header("GIF89a", 2, 2, 0xF7).Comment("a comment");
    bytes.Loop(0).Extension(0xFF, "\x0BXXXXXXXX1.0", "data");
    bytes
        .Extension(0xFF,
                   "\x0B"
                   "ANIMEXTS1.0",
                   std::string("\1\0\0", 3))
        .Extension(0x77, "", "unknown");
    for (int i = 0; i < 3; ++i) bytes.Control(5).SmallImage(0x87);
    return bytes.Add({0x3B});
}

// The bytes of an image without a palette of its own.
GifBytes ImageOf(const Block& image) {
    File data;
    EXPECT_TRUE(data.CreateMemory());
    EXPECT_TRUE(EncodeImageData(data, image, Manner::kWhole));
    const ImageFields fields = GetImageFields(image);
    return GifBytes()
        .ImageHead(fields.width, fields.height, 0)
        .Add(Bytes(data.Written().begin(), data.Written().end()));
}

class CliOptimise : public testing::Test {
protected:
    CliRun Run(Words words, const Bytes& in = Wasteful()) const {
        WriteAll(in_, in);
        words.insert(words.begin(), "optimise");
        words.insert(words.end(), {in_, out_});
        return RunCli(words);
    }
    std::string KindsWritten() const { return KindsOf(LoadedGif(ReadAll(out_), Manner::kWhole)); }

    TempFolder folder_;
    std::string in_ = folder_.Path("in.gif"), out_ = folder_.Path("out.gif");
};

}  // namespace

TEST_F(CliOptimise, TellsBothSizes) {
    for (const char* effort : {"fast", "normal", "max"}) {
        const CliRun run = Run({"--effort", effort, "--jobs", "2"});
        EXPECT_EQ(run.status, kExitDone) << run.err;
        const auto sizes = std::to_string(Wasteful().size()) + " -> " + std::to_string(ReadAll(out_).size());
        EXPECT_NE(run.out.find(": " + sizes + " bytes (-9"), std::string::npos) << run.out;
        EXPECT_EQ(KindsWritten(), "16755932");
    }
    EXPECT_EQ(KindsOf(LoadedGif(Wasteful(), Manner::kWhole)), "167559323232");
}

TEST_F(CliOptimise, KeepsFramesAndTakesOutBlocksWhenTold) {
    const std::tuple<Words, const char*> cases[] = {
        {{"--keep-frames"}, "167559323232"},         {{"--strip", "comments"}, "1755932"},
        {{"--strip=applications"}, "1675932"},  // the second loop stays
        {{"--strip", "unknown,comments"}, "175532"}, {{"--strip", "names,texts"}, "16755932"},
    };
    for (const auto& [words, kinds] : cases) {
        EXPECT_EQ(Run(words).status, kExitDone) << words[0];
        EXPECT_EQ(KindsWritten(), kinds) << words[0];
    }
}

TEST_F(CliOptimise, FindsTheLeastLossThatFits) {
    // A ramp of 16 near greys in disorder: exactly it takes many codes.
    GifBytes bytes = GifBytes().Header("GIF89a", 40, 40, 0xF3);
    Block image = MakeImage(40, 40, 4);
    {
        ImageWriteLock bitmap(&image.data);
        for (int i = 0; i < 1600; ++i)
            SetImagePixel(bitmap, i % 40, i / 40, static_cast<uint32_t>(i * i / 7 + i * 31) % 16);
    }
    bytes.Add(ImageOf(image)).Add({0x3B});
    const CliRun tight = Run({"--to", "400"}, bytes);
    EXPECT_EQ(tight.status, kExitDone) << tight.err;
    EXPECT_LE(ReadAll(out_).size(), 400u);
    EXPECT_NE(tight.out.find(", lossy "), std::string::npos) << tight.out;
    const CliRun wide = Run({"--to", "2M"}, bytes);
    EXPECT_EQ(wide.status, kExitDone) << wide.err;
    EXPECT_EQ(wide.out.find("lossy"), std::string::npos) << wide.out;
    const Bytes before = ReadAll(out_);
    const CliRun none = Run({"--to", "20"}, bytes);
    EXPECT_EQ(none.status, kExitFailed);
    EXPECT_NE(none.err.find("does not fit"), std::string::npos) << none.err;
    EXPECT_EQ(ReadAll(out_), before);
}

TEST_F(CliOptimise, TellsTheLeastThatItFound) {
    // Noise in 100 colours of all kinds, for which more loss does not always take fewer bytes.
    Random random;
    Block image = MakeImage(24, 24, 8);
    {
        ImageWriteLock bitmap(&image.data);
        for (int i = 0; i < 576; ++i) SetImagePixel(bitmap, i % 24, i / 24, static_cast<uint32_t>(random() % 100));
    }
    GifBytes bytes = GifBytes().Header("GIF89a", 24, 24, 0xF6);
    for (int i = 0; i < 384; ++i) bytes[bytes.size() - 384 + static_cast<size_t>(i)] = static_cast<uint8_t>(random());
    bytes.Add(ImageOf(image)).Add({0x3B});
    const std::string refusal = Run({"--to", "1"}, bytes).err, marker = "does not fit: ";
    ASSERT_NE(refusal.find(marker), std::string::npos) << refusal;
    const int least = std::stoi(refusal.substr(refusal.find(marker) + marker.size()));
    EXPECT_EQ(Run({"--to", std::to_string(least - 1)}, bytes).status, kExitFailed) << least;
    EXPECT_EQ(Run({"--to", std::to_string(least)}, bytes).status, kExitDone) << least;
    EXPECT_EQ(ReadAll(out_).size(), static_cast<size_t>(least));
}

TEST_F(CliOptimise, CountsTheCommentThatItAdds) {
    ASSERT_EQ(Run({}).status, kExitDone);
    const std::string without = std::to_string(ReadAll(out_).size());
    const Bytes before = ReadAll(out_);
    const CliRun tight = Run({"--owner", "Zoe", "--to", without});
    EXPECT_EQ(tight.status, kExitFailed);
    EXPECT_NE(tight.err.find("does not fit"), std::string::npos) << tight.err;
    EXPECT_EQ(ReadAll(out_), before);
    const CliRun run = Run({"--owner", "Zoe"});
    EXPECT_EQ(run.status, kExitDone) << run.err;
    EXPECT_NE(run.out.find("-> " + std::to_string(ReadAll(out_).size()) + " bytes"), std::string::npos) << run.out;
    EXPECT_EQ(KindsWritten(), "167559326");
}

TEST_F(CliOptimise, FitsTheScreenToTheImagesAsTheyAreRead) {
    constexpr int kHeadBytes = 9;
    const GifBytes small = GifBytes().SmallImage();
    const GifBytes nothing = GifBytes().Control(5, 1).Add(ImageOf(MakeImage(8, 8, 2)));
    const std::tuple<const char*, GifBytes, int> cases[] = {
        {"an image beyond the screen",
         GifBytes()
             .Header("GIF89a", 2, 2, 0x81)
             .SmallImage()
             .Add({0x2C})
             .Word(1)
             .Word(1)
             .Word(2)
             .Word(2)
             .Add(Bytes(small.begin() + kHeadBytes, small.end())),
         3},
        {"an image that shows nothing", GifBytes().Header("GIF89a", 9, 9, 0xF7).Add(nothing), 8},
    };
    for (const auto& [what, bytes, side] : cases) {
        const CliRun run = Run({"--fit-screen"}, GifBytes(bytes).Add({0x3B}));
        EXPECT_EQ(run.status, kExitDone) << what << run.err;
        const HeaderFields screen = GetHeaderFields(LoadedGif(ReadAll(out_), Manner::kWhole).blocks[0]);
        EXPECT_EQ(screen.screenWidth, side) << what;
        EXPECT_EQ(screen.screenHeight, side) << what;
    }
}

TEST_F(CliOptimise, CopiesWhatItLeavesAlone) {
    Bytes cut = Wasteful();
    cut.pop_back();
    const CliRun run = Run({}, cut);
    EXPECT_EQ(run.status, kExitDone);
    EXPECT_NE(run.err.find("its pictures are left alone, because it is damaged\n"), std::string::npos) << run.err;
    EXPECT_NE(run.out.find("(+0.0 %)"), std::string::npos) << run.out;
    EXPECT_EQ(ReadAll(out_), cut);
    EXPECT_EQ(Run({"--strict"}, cut).status, kExitFailed);
}

TEST_F(CliOptimise, RefusesWrongWords) {
    const std::tuple<Words, const char*> cases[] = {
        {{"--effort", "more"}, "--effort is fast, normal or max, not more"},
        {{"--jobs", "0"}, "--jobs is a number of 1 to 256, not 0"},
        {{"--jobs", "x"}, "--jobs is a number"},
        {{"--strip", "comments,all"}, "--strip takes comments"},
        {{"--strip", ""}, "--strip takes comments"},
        {{"--lossy", "256"}, "--lossy is a number of 0 to 255, not 256"},
        {{"--to", "0"}, "--to is a number of bytes"},
        {{"--to", "3G"}, "--to is a number of bytes"},
        {{"--to", "3K", "--lossy", "3"}, "give one of them"},
        {{"--classic"}, "--classic keeps no document as it plays"},
        {{"third"}, "give IN and OUT"},
    };
    for (const auto& [words, complaint] : cases) {
        const CliRun run = Run(words);
        EXPECT_EQ(run.status, kExitUsage) << complaint;
        EXPECT_NE(run.err.find(complaint), std::string::npos) << run.err;
        EXPECT_FALSE(FileExists(out_));
    }
}
