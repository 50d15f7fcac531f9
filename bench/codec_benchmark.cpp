// Decoding and encoding whole files, side by side with giflib. Each program reads a file from the disk's cache and
// keeps every frame, as a document does, or writes to the null device. Run through bench/run, which makes the files and
// prints the ratios.
#include <benchmark/benchmark.h>
#include <gif_lib.h>

#include <algorithm>
#include <cstdlib>
#include <string>

#include "gif/block_list.h"
#include "gif/descriptor.h"
#include "gif/gif_reader.h"
#include "gif/lzw_encoder.h"

namespace {

const char* const kFiles[] = {"cartoon", "photo", "small", "noise", "many"};

// The path of the file that the benchmark's argument names.
std::string PathOf(benchmark::State& state) {
    const char* folder = getenv("BENCH_FILES");
    state.SetLabel(kFiles[state.range(0)]);
    return std::string(folder ? folder : ".") + "/" + kFiles[state.range(0)] + ".gif";
}

void Report(benchmark::State& state, double pixels) {
    state.counters["Mpixel/s"] =
        benchmark::Counter(pixels * static_cast<double>(state.iterations()) / 1e6, benchmark::Counter::kIsRate);
}

bool Load(BlockList* list, const std::string& path) {
    return CreateBlockList(list) && ReadGifFile(list, path.c_str()) == kReadDone;
}

double PixelsOf(const std::string& path) {
    BlockList list;
    double pixels = 0;
    if (Load(&list, path))
        for (const Block& block : list.All()) {
            ImageFields image = GetImageFields(block);
            if (block.kind == kImageBlock) pixels += 1.0 * image.width * image.height;
        }
    return pixels;
}

GifFileType* OpenWithGiflib(const std::string& path) {
    GifFileType* gif = DGifOpenFileName(path.c_str(), nullptr);
    return gif && DGifSlurp(gif) == GIF_OK ? gif : nullptr;
}

void BM_Decode(benchmark::State& state) {
    const std::string path = PathOf(state);
    for (auto _ : state) {
        BlockList list;
        if (!Load(&list, path)) return state.SkipWithError("the file can't be read");
    }
    Report(state, PixelsOf(path));
}

void BM_DecodeGiflib(benchmark::State& state) {
    const std::string path = PathOf(state);
    for (auto _ : state) {
        GifFileType* gif = OpenWithGiflib(path);
        if (!gif) return state.SkipWithError("giflib can't read the file");
        DGifCloseFile(gif, nullptr);
    }
    Report(state, PixelsOf(path));
}

void BM_Encode(benchmark::State& state) {
    const std::string path = PathOf(state);
    BlockList list;
    if (!Load(&list, path)) return state.SkipWithError("the file can't be read");
    for (auto _ : state) {
        File file;
        bool written = file.Create("/dev/null") && std::ranges::all_of(list.All(), [&](const Block& block) {
                           return block.kind != kImageBlock || EncodeImageData(file, block);
                       });
        if (!written || !file.Close()) return state.SkipWithError("writing failed");
    }
    Report(state, PixelsOf(path));
}

// giflib gets the frames as it wants them: one byte a pixel, line by line.
void BM_EncodeGiflib(benchmark::State& state) {
    const std::string path = PathOf(state);
    GifFileType* in = OpenWithGiflib(path);
    if (!in) return state.SkipWithError("giflib can't read the file");
    for (auto _ : state) {
        GifFileType* gif = EGifOpenFileName("/dev/null", false, nullptr);
        EGifPutScreenDesc(gif, in->SWidth, in->SHeight, in->SColorResolution, 0, in->SColorMap);
        for (int i = 0; i < in->ImageCount; ++i) {
            const GifImageDesc& image = in->SavedImages[i].ImageDesc;
            GifByteType* row = in->SavedImages[i].RasterBits;
            EGifPutImageDesc(gif, image.Left, image.Top, image.Width, image.Height, false, image.ColorMap);
            for (int y = 0; y < image.Height; ++y, row += image.Width) EGifPutLine(gif, row, image.Width);
        }
        EGifCloseFile(gif, nullptr);
    }
    DGifCloseFile(in, nullptr);
    Report(state, PixelsOf(path));
}

BENCHMARK(BM_Decode)->DenseRange(0, 4)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_DecodeGiflib)->DenseRange(0, 4)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Encode)->DenseRange(0, 4)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_EncodeGiflib)->DenseRange(0, 4)->Unit(benchmark::kMillisecond);

}  // namespace
