// How small the codes of whole animations become, and in what time: every effort side by side with the plain encoder,
// and with the time that gifsicle -O3 takes for the same files. Reads the GIF files of the folder BENCH_ANIMATIONS, or
// else those that bench/run makes in BENCH_FILES. Every frame is searched as it is stored, no pixel of it free.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "gif/descriptor.h"
#include "gif/gif_reader.h"
#include "gif/interlace.h"
#include "gif/lzw_encoder.h"
#include "gif/source_bytes.h"
#include "size/code_search.h"

namespace {

struct StoredFrame {
    std::vector<uint8_t> pixels;  // in the order in which they are stored
    int codeSize;
    size_t storedBytes;  // of the file's own codes
    Block block;
};

std::vector<std::string> Paths() {
    const char* folder = getenv("BENCH_ANIMATIONS");
    if (!folder) folder = getenv("BENCH_FILES");
    std::vector<std::string> paths;
    for (const auto& entry : std::filesystem::directory_iterator(folder ? folder : "."))
        if (entry.path().extension() == ".gif") paths.push_back(entry.path().string());
    std::ranges::sort(paths);
    return paths;
}

void AddFrame(const Block& block, std::vector<StoredFrame>* frames) {
    SourceLock source(block);
    ImageLock bitmap(block.data);
    if (!source || !bitmap) return;
    const ImageFields fields = GetImageFields(block);
    const size_t data = 10 + (fields.packed & kHasPalette ? size_t{6} << (fields.packed & 7) : 0);
    StoredFrame frame = {{}, std::max<int>(source.Own()[data], 2), source.Own().size() - data, block};
    RowWalk walk(bitmap->height, (fields.packed & kImageInterlaced) != 0, Manner::kWhole);
    for (int y = 0; y < bitmap->height; ++y, walk.Advance())
        for (int x = 0; x < bitmap->width; ++x)
            frame.pixels.push_back(static_cast<uint8_t>(IndexAt(ImageRow(bitmap, walk.Row()), x, bitmap->bitCount)));
    frames->push_back(std::move(frame));
}

// The frames of all files; read once.
const std::vector<StoredFrame>& Frames() {
    static const std::vector<StoredFrame> frames = [] {
        std::vector<StoredFrame> read;
        for (const std::string& path : Paths()) {
            BlockList list;
            ReadReport report;
            if (!CreateBlockList(&list) || ReadGifFile(&list, path.c_str(), &report, Manner::kWhole) != kReadDone)
                continue;
            for (const Block& block : list.All())
                if (block.kind == kImageBlock) AddFrame(block, &read);
        }
        return read;
    }();
    return frames;
}

void Report(benchmark::State& state, size_t bytes) {
    size_t stored = 0;
    for (const StoredFrame& frame : Frames()) stored += frame.storedBytes;
    state.counters["bytes"] = static_cast<double>(bytes);
    state.counters["of stored"] = static_cast<double>(bytes) / static_cast<double>(stored);
}

void BM_SearchCodes(benchmark::State& state) {
    const auto effort = static_cast<Effort>(state.range(0));
    state.SetLabel(std::vector<std::string>{"fast", "normal", "max"}[static_cast<size_t>(effort)]);
    size_t bytes = 0;
    Frames();
    for (auto _ : state) {
        bytes = 0;
        for (const StoredFrame& frame : Frames()) {
            EncodedPixels encoded;
            const PixelsToEncode image = {frame.pixels, {}, -1, frame.codeSize, nullptr, nullptr};
            if (!SearchCodes(image, effort, 0, &encoded)) return state.SkipWithError("the search failed");
            bytes += encoded.data.size();
        }
    }
    Report(state, bytes);
}

void BM_EncodePlainly(benchmark::State& state) {
    size_t bytes = 0;
    Frames();
    for (auto _ : state) {
        bytes = 0;
        for (const StoredFrame& frame : Frames()) {
            File file;
            if (!file.CreateMemory() || !EncodeImageData(file, frame.block)) return state.SkipWithError("no memory");
            bytes += file.Written().size();
        }
    }
    Report(state, bytes);
}

// The whole files, since nothing less can be asked of it; its bytes are another matter.
void BM_Gifsicle(benchmark::State& state) {
    const std::vector<std::string> paths = Paths();
    for (auto _ : state)
        for (const std::string& path : paths)
            if (std::system(("gifsicle -w -O3 '" + path + "' -o /dev/null").c_str()) != 0)
                return state.SkipWithError("gifsicle failed");
}

BENCHMARK(BM_EncodePlainly)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_Gifsicle)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_SearchCodes)->DenseRange(0, 2)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(1);

}  // namespace
