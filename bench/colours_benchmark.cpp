// The colour conversions beside their plain forms. "Mpixel/s" counts pixels of the source (cells of the table).
#include <benchmark/benchmark.h>

#include "gif/block_list.h"
#include "imaging/dither.h"
#include "imaging/inverse_colour_table.h"
#include "imaging/remap.h"
#include "imaging/shared_palette.h"
#include "tests/support/literal_colours.h"
#include "tests/support/random_images.h"

namespace {

constexpr int kWidth = 1024, kHeight = 768;
constexpr int kRandomPalette = 17;  // of the test palettes: 256 random colours

Palette PaletteNumber(int64_t number) {
    Random random(1);
    return TestPalettes(random)[static_cast<size_t>(number)];
}

// An image of 24 bits with the colours that `colourAt(x, y)` gives.
template <typename ColourAt>
MemoryHandle MakeImage(int width, int height, ColourAt colourAt) {
    MemoryHandle image = CreateImageBitmap(width, height, nullptr, 24);
    MemoryLock lock(image);
    for (int y = 0; y < height; ++y) {
        uint8_t* row = ImageRow(lock.As<BitmapHeader>(), y);
        for (int x = 0; x < width; ++x, row += 3) {
            RgbTriple colour = colourAt(x, y);
            row[0] = colour.blue;
            row[1] = colour.green;
            row[2] = colour.red;
        }
    }
    return image;
}

// Smooth shades with some noise: tens of thousands of colours, as in a photo.
MemoryHandle Photo(int width, int height) {
    Random random(2);
    auto noisy = [&](int shade) { return static_cast<uint8_t>(shade + static_cast<int>(random() % 16)); };
    return MakeImage(width, height, [&](int x, int y) {
        uint8_t blue = noisy(x * 200 / width), green = noisy(y * 200 / height);
        return RgbTriple{noisy((x + y) * 100 / (width + height)), green, blue};
    });
}

// Noise of the colours of the palette itself.
MemoryHandle Drawing(int width, int height, const Palette& palette) {
    Random random(3);
    return MakeImage(width, height, [&](int, int) { return palette[random() % kPaletteEntries]; });
}

void CountPixels(benchmark::State& state, double pixels) {
    state.counters["Mpixel/s"] =
        benchmark::Counter(pixels * static_cast<double>(state.iterations()) / 1e6, benchmark::Counter::kIsRate);
}

// Palettes: 6 web colours, 9 greys, 14 with 8 colours used, 17 with 256 random colours, 18 crowded.
void RunInverseTable(benchmark::State& state, bool plain) {
    Palette palette = PaletteNumber(state.range(0));
    InverseColourTable table;
    for (auto _ : state)
        if (plain)
            benchmark::DoNotOptimize(LiteralInverseTable(palette.data()));
        else
            table.Fill(palette.data());
    CountPixels(state, kColourCells);
}

// The fast form, or the plain one where there is one, on an image of its own; the argument is the result's depth.
template <typename Fast, typename Plain>
void RunConversion(benchmark::State& state, MemoryHandle made, bool plain, Fast convert, Plain convertPlainly) {
    OwnedMemory image(made);
    Palette palette = PaletteNumber(kRandomPalette);
    auto depth = static_cast<int>(state.range(0));
    for (auto _ : state)
        OwnedMemory result(plain
                               ? convertPlainly(image.Get(), palette.data(), depth, LiteralInverseTable(palette.data()))
                               : convert(image.Get(), palette.data(), depth, 0));
    CountPixels(state, kWidth * kHeight);
}

void RunRemap(benchmark::State& state, bool drawn, bool plain) {
    MemoryHandle image = drawn ? Drawing(kWidth, kHeight, PaletteNumber(kRandomPalette)) : Photo(kWidth, kHeight);
    RunConversion(state, image, plain, RemapImage, LiteralRemap);
}

void RunDither(benchmark::State& state, bool plain) {
    RunConversion(state, Photo(kWidth, kHeight), plain, DitherImage, LiteralDither);
}

// A document of `frames` images of 640 x 480. Drawings hold exactly 256 colours, so that the list of exact colours is
// asked for every pixel; photos overflow it at once.
void RunSharedPalette(benchmark::State& state, bool drawn, bool plain) {
    constexpr int kFrameWidth = 640, kFrameHeight = 480;
    auto frames = state.range(0);
    state.SetLabel("frames");
    Palette palette = PaletteNumber(kRandomPalette);
    OwnedBlockList list;
    std::vector<MemoryHandle> images;
    bool made = CreateBlockList(&list);
    for (int64_t i = 0; made && i < frames; ++i) {
        Block block = {};
        block.kind = kImageBlock;
        block.data = drawn ? Drawing(kFrameWidth, kFrameHeight, palette) : Photo(kFrameWidth, kFrameHeight);
        images.push_back(block.data);
        made = AppendBlock(&list, &block);
    }
    if (!made) state.SkipWithError("out of memory");
    for (auto _ : state) {
        int wanted = kPaletteEntries;
        Palette built;
        if (plain)
            benchmark::DoNotOptimize(LiteralSharedPalette(wanted, built.data(), images));
        else
            benchmark::DoNotOptimize(BuildSharedPalette(&wanted, built.data(), list));
    }
    CountPixels(state, static_cast<double>(frames) * kFrameWidth * kFrameHeight);
}
void Tables(benchmark::internal::Benchmark* benchmark) {
    for (int palette : {6, 9, 14, 17, 18}) benchmark->Arg(palette);
    benchmark->Unit(benchmark::kMicrosecond);
}

BENCHMARK_CAPTURE(RunInverseTable, Table, false)->Apply(Tables);
BENCHMARK_CAPTURE(RunInverseTable, TablePlain, true)->Apply(Tables);
BENCHMARK_CAPTURE(RunRemap, Photo, false, false)->Arg(1)->Arg(4)->Arg(8)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(RunRemap, Drawing, true, false)->Arg(8)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(RunRemap, DrawingPlain, true, true)->Arg(8)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(RunDither, Photo, false)->Arg(1)->Arg(4)->Arg(8)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(RunDither, PhotoPlain, true)->Arg(1)->Arg(8)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(RunSharedPalette, Drawings, true, false)->Arg(100)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(RunSharedPalette, DrawingsPlain, true, true)->Arg(1)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(RunSharedPalette, Photos, false, false)->Arg(100)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(RunSharedPalette, PhotosPlain, false, true)->Arg(1)->Unit(benchmark::kMillisecond);

}  // namespace
