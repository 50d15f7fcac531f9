// What each pixel of an image costs: zephyr cost and what it is made of.
#include "size/pixel_costs.h"

#include <array>
#include <cmath>
#include <cstring>
#include <filesystem>
#include <numeric>

#include "gif/lzw_decoder.h"
#include "imaging/heat_scale.h"
#include "platform/faults.h"
#include "size/block_sizes.h"
#include "tests/support/cli_runner.h"
#include "tests/support/operations.h"
#include "tests/support/png_reading.h"

namespace {

// An image of 2 columns with these codes of 2-bit pixels, all in one sub-block; each is a code and its width.
GifBytes ImageOf(int rows, int flags, std::initializer_list<std::pair<unsigned, unsigned>> codes) {
    CodeBits bits;
    for (const auto& [code, width] : codes) bits.Put(code, width);
    GifBytes image = GifBytes().ImageHead(2, rows, flags).Add({2, static_cast<int>(bits.Packed().size())});
    return image.Add(bits.Packed()).Add({0});
}

LoadedGif Loaded(const GifBytes& image) {
    return LoadedGif(GifBytes().Header("GIF89a", 9, 9, 0x81).Add(image).Add({0x3B}), Manner::kWhole);
}

PixelCosts CostsOf(const Block& image) {
    PixelCosts costs;
    EXPECT_TRUE(MeasurePixelCosts(image, &costs));
    return costs;
}

// The bits of each pixel, a blank behind each.
std::string Shown(const PixelCosts& costs) {
    std::string all;
    char text[16];
    for (int i = 0; i < costs.width * costs.height; ++i) {
        snprintf(text, sizeof text, "%g ", double{costs.bits[static_cast<size_t>(i)]});
        all += text;
    }
    return all;
}

// Red, green and blue as Oklab (lightness, a, b).
std::array<double, 3> OklabOf(RgbTriple colour) {
    auto linear = [](uint8_t byte) {
        const double value = byte / 255.0;
        return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    const double r = linear(colour.red), g = linear(colour.green), b = linear(colour.blue);
    const double l = std::cbrt(0.4122214708 * r + 0.5363325363 * g + 0.0514459929 * b);
    const double m = std::cbrt(0.2119034982 * r + 0.6806995451 * g + 0.1073969566 * b);
    const double s = std::cbrt(0.0883024619 * r + 0.2817188376 * g + 0.6299787005 * b);
    return {0.2104542553 * l + 0.7936177850 * m - 0.0040720468 * s,
            1.9779984951 * l - 2.4285922050 * m + 0.4505937099 * s,
            0.0259040371 * l + 0.7827717662 * m - 0.8086757660 * s};
}

}  // namespace

TEST(PixelCosts, AreTheBitsOfACodeSpreadOverItsPixels) {
    constexpr std::pair<unsigned, unsigned> kClear = {4, 3}, kEnd = {5, 3}, kOne = {1, 3}, kTwo = {2, 3};
    struct Case {
        const char* what;
        GifBytes image;
        const char* bits;
        uint64_t pixels, pixelBits;
    };
    const Case cases[] = {
        {"literals", ImageOf(2, 0, {kClear, kOne, kTwo, kOne, {2, 4}, {5, 4}}), "3 3 3 4 ", 4, 13},
        {"strings", ImageOf(3, 0, {kClear, kOne, {6, 3}, {7, 3}, {5, 4}}), "3 1.5 1.5 1 1 1 ", 6, 9},
        {"a clear code", ImageOf(2, 0, {kClear, kOne, {6, 3}, kClear, kOne, kEnd}), "3 1.5 1.5 3 ", 4, 9},
        {"no first clear code", ImageOf(1, 0, {kOne, kTwo, kEnd}), "3 3 ", 2, 6},
        {"beyond the image", ImageOf(1, 0, {kClear, kOne, {6, 3}, kTwo, {5, 4}}), "3 3 ", 2, 6},
        {"too few", ImageOf(2, 0, {kClear, kOne, {6, 3}, kEnd}), "3 1.5 1.5 0 ", 3, 6},
        {"a code that can't be", ImageOf(2, 0, {kClear, kOne, {7, 3}, kOne}), "3 0 0 0 ", 1, 3},
        {"one that can't be first", ImageOf(1, 0, {kClear, {6, 3}, kOne}), "0 0 ", 0, 0},
        {"interlaced", ImageOf(5, 0x40, {kClear, kOne, {6, 3}, kTwo, {0, 4}, {1, 4}, {2, 4}, {0, 4}, {1, 4}, {2, 4}}),
         "3 1.5 4 4 4 4 4 4 1.5 3 ", 10, 33},
        {"a wrong code size", GifBytes().ImageHead(1, 1, 0).Add({12, 1, 9, 0}), "0 ", 0, 0},
        {"no data", GifBytes().ImageHead(1, 1, 0).Add({2, 0}), "0 ", 0, 0},
    };
    for (const Case& c : cases) {
        LoadedGif file = Loaded(c.image);
        ASSERT_EQ(file.count, 2u) << c.what;
        const PixelCosts costs = CostsOf(file.blocks[1]);
        EXPECT_EQ(Shown(costs), c.bits) << c.what;
        EXPECT_EQ(costs.pixels, c.pixels) << c.what;
        EXPECT_EQ(costs.pixelBits, c.pixelBits) << c.what;
        EXPECT_EQ(costs.pixelBits + costs.otherBits, 8 * (c.image.size() - 10)) << c.what;
    }
    LoadedGif strings = Loaded(cases[1].image);
    const PixelCosts costs = CostsOf(strings.blocks[1]);
    EXPECT_EQ(costs.least, 1.0f);
    EXPECT_EQ(costs.most, 3.0f);
    EXPECT_EQ(costs.Mean(), 1.5);
}

TEST(PixelCosts, AddUpToTheDataOfEveryImage) {
    size_t images = 0;
    for (const auto& entry : std::filesystem::directory_iterator(TEST_DATA)) {
        LoadedGif file(ReadAll(entry.path().string()), Manner::kWhole);
        DocumentSizes sizes;
        ASSERT_TRUE(MeasureDocument(file, &sizes));
        for (uint32_t i = 0; i < file.count; ++i) {
            Block image = file.blocks[i];
            const ImageFields fields = GetImageFields(image);
            const uint64_t room = uint64_t{fields.width} * fields.height;
            if (image.kind != kImageBlock || !image.data || room > 1000000) continue;
            SCOPED_TRACE(entry.path().filename().string() + " block " + std::to_string(i));
            const PixelCosts costs = CostsOf(image);
            const double sum = std::accumulate(costs.bits.get(), costs.bits.get() + room, 0.0);
            EXPECT_NEAR(sum, static_cast<double>(costs.pixelBits), 0.001 * static_cast<double>(costs.pixelBits));
            const uint64_t dataBytes = sizes.blocks[i].Own() - sizes.blocks[i].palette - 1 - kImageDescriptorBytes;
            EXPECT_EQ(costs.pixelBits + costs.otherBits, 8 * dataBytes);

            SourceLock source(image);
            const size_t codeSizeAt = source.Own().size() - static_cast<size_t>(dataBytes);
            uint64_t decoded = 0;
            File codes;
            codes.OpenMemory(source.Own().data() + codeSizeAt + 1, static_cast<size_t>(dataBytes) - 1);
            (void)DecodeImageData(codes, source.Own()[codeSizeAt], &image, Manner::kWhole, &decoded);
            EXPECT_EQ(costs.pixels, decoded);
            ++images;
        }
    }
    EXPECT_GT(images, 500u);
}

TEST(PixelCosts, OfAChangedImageAreThoseOfItsNewCodes) {
    LoadedGif file = Loaded(ImageOf(1, 0, {{1, 3}, {2, 3}, {5, 3}}));
    ASSERT_TRUE(MarkChanged(&file.blocks[1]));
    const PixelCosts costs = CostsOf(file.blocks[1]);
    EXPECT_EQ(Shown(costs), "3 3 ");
    EXPECT_EQ(costs.otherBits, 8 * (1 + 1 + 2 + 1) - 6u);
}

TEST(PixelCosts, FailWithoutMemory) {
    LoadedGif file = Loaded(GifBytes().SmallImage());
    Block made = MakeImage(2, 2, 2);
    PixelCosts costs;
    for (const Block& image : {file.blocks[1], made}) {
        faults.allocationsUntilFailure = 0;
        const bool isMeasured = MeasurePixelCosts(image, &costs);
        faults = {};
        EXPECT_FALSE(isMeasured);
    }
}

TEST(HeatScale, HasStepsOfOneLengthThatGetLighter) {
    constexpr int kSteps = 20;
    std::array<double, 3> last = OklabOf(HeatColour(0));
    for (int i = 1; i <= kSteps; ++i) {
        const std::array<double, 3> next = OklabOf(HeatColour(double{1} * i / kSteps));
        const double length = std::hypot(next[0] - last[0], next[1] - last[1], next[2] - last[2]);
        EXPECT_NEAR(length, 0.0447, 0.003) << i;
        EXPECT_GT(next[0], last[0]) << i;
        last = next;
    }
    EXPECT_EQ(HeatColour(-1), HeatColour(0));
    EXPECT_EQ(HeatColour(2), HeatColour(1));
    EXPECT_EQ(HeatOfBits(3), 0.5);
    EXPECT_EQ(HeatOfBits(99), 1);
}

class CliCost : public testing::Test {
protected:
    CliCost() {
        WriteAll(in_, GifBytes()
                          .Header("GIF89a", 9, 9, 0x81)
                          .Comment("x")
                          .Add(ImageOf(2, 0, {{4, 3}, {1, 3}, {6, 3}, {5, 3}}))
                          .SmallImage()
                          .Add({0x2C, 0, 0, 0, 0, 0, 0, 1, 0, 0, 2, 1, 0x2C, 0})
                          .Add({0x3B}));
    }

    TempFolder folder_;
    std::string in_ = folder_.Path("in.gif"), out_ = folder_.Path("out.png");
};

TEST_F(CliCost, DrawsAPictureAndTellsTheFigures) {
    const CliRun run = RunCli({"cost", in_, "image:0", out_});
    EXPECT_EQ(run.status, kExitDone);
    EXPECT_EQ(run.out.substr(0, run.out.find("bits: 0 #")),
              "block 2: 2 x 2 pixels of 1.500 to 3.000 bits, 2.000 in the mean\n"
              "    pixels that the data lacks: 1\n"
              "    for pixels: 6 bits; other codes, lengths and ends: 34 bits\n");
    EXPECT_NE(run.out.find(", 12 #e2fd84\n"), std::string::npos) << run.out;
    const ReadPng png(ReadAll(out_));
    ASSERT_EQ(png.pixels.size(), 4u);
    EXPECT_EQ(png.width, 2u);
    EXPECT_EQ(png.pixels[1], png.pixels[2]);
    EXPECT_NE(png.pixels[0], png.pixels[1]);
    EXPECT_EQ(png.pixels[3], 0u);
    uint8_t dear[4];
    memcpy(dear, &png.pixels[0], sizeof dear);
    const RgbTriple expected = HeatColour(HeatOfBits(3));
    EXPECT_NEAR(dear[0], expected.red, 2);
    EXPECT_NEAR(dear[1], expected.green, 2);
    EXPECT_NEAR(dear[2], expected.blue, 2);
}

TEST_F(CliCost, DrawsSeveralPicturesOrToStandardOutput) {
    const CliRun several = RunCli({"cost", in_, "image:0-1", folder_.Path("%03d.png")});
    EXPECT_EQ(several.status, kExitDone);
    EXPECT_NE(several.out.find("\nblock 3: 2 x 2 pixels"), std::string::npos) << several.out;
    EXPECT_EQ(folder_.Names(), (std::vector<std::string>{"002.png", "003.png", "in.gif"}));
    const CliRun piped = RunCli({"cost", in_, "3", "-"});
    // Windows reads what was captured as text, which ends behind the first six bytes of a PNG file.
    constexpr size_t kBytesSeen = 4;
    const Bytes png = ReadAll(folder_.Path("003.png"));
    EXPECT_EQ(piped.out.substr(0, kBytesSeen), std::string(png.begin(), png.begin() + kBytesSeen));
}

TEST_F(CliCost, RefusesWhatHasNoPixels) {
    const std::tuple<Words, int, std::string> cases[] = {
        {{"cost", in_, "1", out_}, kExitFailed, "in.gif: block 1 is not an image\n"},
        {{"cost", in_, "4", out_}, kExitFailed, "out.png: can't be written: a PNG file has at least one pixel\n"},
        {{"cost", in_, "image", out_}, kExitFailed, "for 3 blocks give an OUT with %d in it, for their numbers\n"},
        {{"cost", in_, "image"}, kExitUsage, "zephyr cost: give FILE, SELECTION and OUT"},
        {{"cost", "--sum", in_, "2", out_}, kExitUsage, "zephyr cost: unknown option --sum"},
        {{"cost", folder_.Path("no.gif"), "2", out_}, kExitFailed, "there is no such file"},
    };
    for (const auto& [words, status, message] : cases) {
        const CliRun run = RunCli(words);
        EXPECT_EQ(run.status, status) << message;
        EXPECT_NE(run.err.find(message), std::string::npos) << run.err;
        EXPECT_FALSE(FileExists(out_)) << message;
    }
}
