// The colour conversions beside their plain forms. "Mpixel/s" counts pixels of the source (cells of the table).
#include <benchmark/benchmark.h>

#include "imaging/dither.h"
#include "imaging/inverse_colour_table.h"
#include "imaging/remap.h"
#include "tests/support/literal_colours.h"
#include "tests/support/random_images.h"

namespace {

constexpr int kWidth = 1024, kHeight = 768;
constexpr int kRandomPalette = 17;  // of the test palettes: 256 random colours

Colours PaletteNumber(int64_t number) {
    Random random(1);
    return TestPalettes(random)[static_cast<size_t>(number)];
}

// Of 24 bits: smooth shades of tens of thousands of colours, as in a photo, or noise of a palette's 256 colours.
MemoryHandle MakeImage(bool drawn) {
    const Colours palette = PaletteNumber(kRandomPalette);
    Random random(2);
    MemoryHandle image = CreateImageBitmap(kWidth, kHeight, nullptr, 24);
    ImageWriteLock bitmap(&image);
    for (int y = 0; y < kHeight; ++y)
        for (int x = 0; x < kWidth; ++x) {
            auto noise = static_cast<uint32_t>(random());
            RgbTriple colour = palette[noise % kPaletteEntries];
            uint32_t drawing = colour.red | uint32_t{colour.green} << 8 | uint32_t{colour.blue} << 16;
            auto shade = static_cast<uint32_t>(x * 200 / kWidth << 16 | y * 200 / kHeight << 8 |
                                               (x + y) * 100 / (kWidth + kHeight));
            SetImagePixel(bitmap, x, y, drawn ? drawing : shade + (noise & 0x0F0F0F));
        }
    return image;
}

void CountPixels(benchmark::State& state, double pixels) {
    state.counters["Mpixel/s"] =
        benchmark::Counter(pixels * static_cast<double>(state.iterations()) / 1e6, benchmark::Counter::kIsRate);
}

// Palettes: 6 web colours, 9 greys, 14 with 8 colours used, 17 with 256 random colours, 18 crowded.
void RunInverseTable(benchmark::State& state, bool plain) {
    Colours palette = PaletteNumber(state.range(0));
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
void RunConversion(benchmark::State& state, bool drawn, bool plain, Fast convert, Plain convertPlainly) {
    MemoryHandle image = MakeImage(drawn);
    Colours palette = PaletteNumber(kRandomPalette);
    auto depth = static_cast<int>(state.range(0));
    for (auto _ : state)
        if (plain)
            benchmark::DoNotOptimize(convertPlainly(image, palette.data(), depth, LiteralInverseTable(palette.data())));
        else
            benchmark::DoNotOptimize(*convert(image, palette.data(), depth, nullptr));
    CountPixels(state, kWidth * kHeight);
}

void RunRemap(benchmark::State& state, bool drawn, bool plain) {
    RunConversion(state, drawn, plain, RemapImage, LiteralRemap);
}

void RunDither(benchmark::State& state, bool plain) {
    RunConversion(state, false, plain, DitherImage, LiteralDither);
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

}  // namespace
