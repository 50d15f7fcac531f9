#include "animation/canvas_png.h"
#include "imaging/apng_writer.h"
#include "platform/checksum.h"
#include "platform/faults.h"
#include "tests/support/png_reading.h"
#include "tests/support/test_blocks.h"

namespace {

uint32_t GreyPixel(int level) {
    const auto part = static_cast<uint8_t>(level);
    return PixelOf({part, part, static_cast<uint8_t>(level / 2)});
}

// A canvas with its own pixels.
struct TestCanvas {
    TestCanvas(int width, int height, auto pixelAt) : pixels(static_cast<size_t>(width * height)) {
        for (int i = 0; i < width * height; ++i) pixels[static_cast<size_t>(i)] = pixelAt(i);
        view = {pixels.data(), width, height};
    }
    std::vector<uint32_t> pixels;
    CanvasView view;
};

std::span<const uint8_t> BytesOf(std::string_view text) {
    return {reinterpret_cast<const uint8_t*>(text.data()), text.size()};
}

}  // namespace

TEST(Crc32, IsTheSumThatPngWants) {
    EXPECT_EQ(Crc32(BytesOf("")), 0u);
    EXPECT_EQ(Crc32(BytesOf("123456789")), 0xCBF43926u) << "the check value of the published sum";
    EXPECT_EQ(Crc32(BytesOf("6789"), Crc32(BytesOf("12345"))), 0xCBF43926u) << "in two pieces";
    EXPECT_EQ(Crc32(BytesOf("IEND")), 0xAE426082u);
}

TEST(CanvasPng, TakesTheSmallestFormThatHoldsThePicture) {
    auto transparentAt0 = [](int i) { return i == 0 ? kTransparent : GreyPixel(i); };
    const uint32_t white = PixelOf({255, 255, 255});
    const std::tuple<const char*, TestCanvas, uint32_t, PngForm> cases[] = {
        {"one colour", TestCanvas(3, 2, [](int) { return GreyPixel(7); }), kTransparent, PngForm::kIndexed},
        {"transparent alone", TestCanvas(1, 1, [](int) { return kTransparent; }), kTransparent, PngForm::kIndexed},
        {"two colours", TestCanvas(9, 1, [](int i) { return GreyPixel(i % 2); }), kTransparent, PngForm::kIndexed},
        {"three", TestCanvas(9, 2, [](int i) { return i % 3 ? GreyPixel(i % 3) : kTransparent; }), kTransparent,
         PngForm::kIndexed},
        {"sixteen", TestCanvas(17, 3, [](int i) { return GreyPixel(i % 16); }), kTransparent, PngForm::kIndexed},
        {"256, one of them transparent", TestCanvas(16, 16, transparentAt0), kTransparent, PngForm::kIndexed},
        {"257, all opaque",
         TestCanvas(257, 1,
                    [](int i) {
                        return PixelOf({1, static_cast<uint8_t>(i), static_cast<uint8_t>(i / 256)});
                    }),
         kTransparent, PngForm::kOpaque},
        {"257, one of them transparent",
         TestCanvas(257, 1,
                    [](int i) {
                        return i ? PixelOf({0, static_cast<uint8_t>(i), static_cast<uint8_t>(i / 256)}) : kTransparent;
                    }),
         kTransparent, PngForm::kFull},
        {"the same with a background",
         TestCanvas(257, 1,
                    [](int i) {
                        return i ? PixelOf({0, static_cast<uint8_t>(i), static_cast<uint8_t>(i / 256)}) : kTransparent;
                    }),
         white, PngForm::kOpaque},
    };
    for (const auto& [what, picture, background, form] : cases) {
        PngStyle style;
        style.background = background;
        ByteBuffer png;
        ASSERT_TRUE(EncodeCanvas(picture.view, {0, 0, picture.view.width, picture.view.height}, style, &png)) << what;
        const ReadPng read(png.Content());
        EXPECT_EQ(read.form, form) << what;
        std::vector<uint32_t> expected = picture.pixels;
        for (uint32_t& pixel : expected)
            if (pixel == kTransparent) pixel = background;
        EXPECT_EQ(read.pixels, expected) << what;
    }
}

TEST(CanvasPng, HoldsAPartOfTheCanvas) {
    TestCanvas picture(10, 8, [](int i) { return GreyPixel(i); });
    ByteBuffer png;
    ASSERT_TRUE(EncodeCanvas(picture.view, {2, 3, 5, 5}, {}, &png));
    const ReadPng read(png.Content());
    EXPECT_EQ(read.width, 3u);
    EXPECT_EQ(read.pixels, (std::vector<uint32_t>{GreyPixel(32), GreyPixel(33), GreyPixel(34), GreyPixel(42),
                                                  GreyPixel(43), GreyPixel(44)}));
}

TEST(CanvasPng, TellsWhenMemoryIsShort) {
    TestCanvas picture(300, 300, [](int i) { return GreyPixel(i % 251 * 7 % 256); });
    long n = 0, failures = 0;
    for (bool failed = true; failed; ++n) {
        faults.onlyOne = true;
        faults.allocationsUntilFailure = n;
        ByteBuffer png;
        const bool done = EncodeCanvas(picture.view, {0, 0, 300, 300}, {}, &png);
        failed = faults.allocationsUntilFailure == Faults::kPast;
        faults = {};
        failures += !done;
        if (done) {
            EXPECT_EQ(ReadPng(png.Content()).pixels, picture.pixels) << n << ": in another form, maybe";
        }
    }
    EXPECT_GT(failures, 0);
}

TEST(ApngWriter, PutsItsChunksAroundTheImageData) {
    TestCanvas first(4, 3, [](int i) { return GreyPixel(i); });
    TestCanvas second(2, 1, [](int i) { return GreyPixel(i + 5); });
    ColourSet colours;
    for (int i = 0; i < 12; ++i) colours.Number(GreyPixel(i));
    ByteBuffer pngs[2];
    ASSERT_TRUE(EncodeCanvasAs(&colours, first.view, {0, 0, 4, 3}, {}, &pngs[0]));
    ASSERT_TRUE(EncodeCanvasAs(&colours, second.view, {0, 0, 2, 1}, {}, &pngs[1]));
    TempFolder folder;
    File file;
    ASSERT_TRUE(file.Create(folder.Path("a.png").c_str()));
    ApngWriter writer(file);
    ASSERT_TRUE(writer.Start(2, 3));
    ASSERT_TRUE(writer.AddFrame(pngs[0].Content(), {0, 0, 4, 3, 10}));
    ASSERT_TRUE(writer.AddFrame(pngs[1].Content(), {1, 2, 2, 1, 65535}));
    ASSERT_TRUE(writer.Finish());
    ASSERT_TRUE(file.Close());
    const Bytes written = ReadAll(folder.Path("a.png"));
    EXPECT_EQ(ReadPng(written).pixels, first.pixels) << "a still picture for programs that know no animation";
    const std::vector<PngChunk> chunks = ChunksOf(written);
    std::string types;
    for (const PngChunk& chunk : chunks) {
        types += chunk.type + " ";
        EXPECT_EQ(chunk.sum, chunk.expectedSum) << chunk.type;
    }
    EXPECT_EQ(types, "IHDR acTL PLTE fcTL IDAT fcTL fdAT IEND ");
    EXPECT_EQ(chunks[1].data, (Bytes{0, 0, 0, 2, 0, 0, 0, 3})) << "frames, plays";
    EXPECT_EQ(chunks[3].data, (Bytes{0, 0, 0, 0, 0, 0, 0, 4, 0, 0, 0, 3, 0, 0, 0, 0, 0, 0, 0, 0, 0, 10, 0, 100, 0, 0}));
    EXPECT_EQ(chunks[5].data,
              (Bytes{0, 0, 0, 1, 0, 0, 0, 2, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 2, 255, 255, 0, 100, 0, 0}));
    EXPECT_EQ(Bytes(chunks[6].data.begin(), chunks[6].data.begin() + 4), (Bytes{0, 0, 0, 2})) << "numbered on";
}

TEST(ApngWriter, RefusesWhatIsNoPng) {
    TempFolder folder;
    TestCanvas picture(1, 1, [](int) { return GreyPixel(1); });
    ByteBuffer png;
    ASSERT_TRUE(EncodeCanvas(picture.view, {0, 0, 1, 1}, {}, &png));
    const Bytes whole(png.Content().begin(), png.Content().end());
    File file;
    ASSERT_TRUE(file.Create(folder.Path("a.png").c_str()));
    ApngWriter writer(file);
    ASSERT_TRUE(writer.Start(1, 0));
    for (size_t length : {size_t{0}, size_t{7}, size_t{8}, size_t{20}, size_t{33}})
        EXPECT_FALSE(writer.AddFrame(std::span(whole).first(length), {0, 0, 1, 1, 1})) << length;
}
