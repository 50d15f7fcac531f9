// Decoding and encoding whole files, side by side with giflib. Each program keeps every frame, as a document does, and
// reads from memory or writes to memory. Run through bench/run, which makes the files and prints the ratios.
#include <benchmark/benchmark.h>
#include <gif_lib.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "gif/block_list.h"
#include "gif/descriptor.h"
#include "gif/gif_reader.h"
#include "gif/lzw_encoder.h"

namespace {

using Bytes = std::vector<uint8_t>;

const char* const kFiles[] = {"cartoon", "photo", "small", "noise", "many"};

const Bytes& FileBytes(int which) {
    static Bytes files[std::size(kFiles)];
    if (files[which].empty()) {
        const char* folder = getenv("BENCH_FILES");
        std::ifstream in(std::string(folder ? folder : ".") + "/" + kFiles[which] + ".gif", std::ios::binary);
        files[which].assign(std::istreambuf_iterator<char>(in), {});
    }
    return files[which];
}

struct Reader {
    const Bytes* bytes;
    size_t at;
};

int ReadFromMemory(GifFileType* gif, GifByteType* to, int bytes) {
    auto* reader = static_cast<Reader*>(gif->UserData);
    size_t piece = std::min(static_cast<size_t>(bytes), reader->bytes->size() - reader->at);
    memcpy(to, reader->bytes->data() + reader->at, piece);
    reader->at += piece;
    return static_cast<int>(piece);
}

int WriteToMemory(GifFileType* gif, const GifByteType* from, int bytes) {
    auto* out = static_cast<Bytes*>(gif->UserData);
    out->insert(out->end(), from, from + bytes);
    return bytes;
}

double MegaPixels(const BlockList& list) {
    double pixels = 0;
    ForEachBlock(list, [&](const Block& block, uint32_t) {
        ImageFields image = GetImageFields(block);
        if (block.kind == kImageBlock) pixels += 1.0 * image.width * image.height;
        return true;
    });
    return pixels / 1e6;
}

// The document of one file, opened once.
struct Opened {
    explicit Opened(int which) {
        const Bytes& bytes = FileBytes(which);
        File file;
        file.OpenMemory(bytes.data(), bytes.size());
        ok = CreateBlockList(&list) && ReadGif(&list, file) == kReadDone;
    }
    ~Opened() { DestroyBlockList(&list); }
    BlockList list = {};
    bool ok;
};

void Report(benchmark::State& state, double megaPixels) {
    state.counters["Mpixel/s"] =
        benchmark::Counter(megaPixels * static_cast<double>(state.iterations()), benchmark::Counter::kIsRate);
}

void BM_Decode(benchmark::State& state) {
    auto which = static_cast<int>(state.range(0));
    state.SetLabel(kFiles[which]);
    double megaPixels = 0;
    for (auto _ : state) {
        Opened opened(which);
        if (!opened.ok) return state.SkipWithError("the file can't be read");
        megaPixels = MegaPixels(opened.list);
    }
    Report(state, megaPixels);
}

void BM_DecodeGiflib(benchmark::State& state) {
    auto which = static_cast<int>(state.range(0));
    state.SetLabel(kFiles[which]);
    double megaPixels = 0;
    for (auto _ : state) {
        Reader reader = {&FileBytes(which), 0};
        GifFileType* gif = DGifOpen(&reader, ReadFromMemory, nullptr);
        if (!gif || DGifSlurp(gif) != GIF_OK) return state.SkipWithError("giflib can't read the file");
        megaPixels = 0;
        for (int i = 0; i < gif->ImageCount; ++i)
            megaPixels += gif->SavedImages[i].ImageDesc.Width * gif->SavedImages[i].ImageDesc.Height / 1e6;
        DGifCloseFile(gif, nullptr);
    }
    Report(state, megaPixels);
}

void BM_Encode(benchmark::State& state) {
    auto which = static_cast<int>(state.range(0));
    state.SetLabel(kFiles[which]);
    Opened opened(which);
    for (auto _ : state) {
        File file;
        if (!file.Create("/dev/null")) return state.SkipWithError("no place to write to");
        bool written = ForEachBlock(opened.list, [&](const Block& block, uint32_t) {
            return block.kind != kImageBlock || EncodeImageData(file, block);
        });
        if (!written || !file.Close()) return state.SkipWithError("writing failed");
    }
    Report(state, MegaPixels(opened.list));
}

// giflib gets the frames as it wants them: one byte a pixel, line by line.
void BM_EncodeGiflib(benchmark::State& state) {
    auto which = static_cast<int>(state.range(0));
    state.SetLabel(kFiles[which]);
    Reader reader = {&FileBytes(which), 0};
    GifFileType* in = DGifOpen(&reader, ReadFromMemory, nullptr);
    if (!in || DGifSlurp(in) != GIF_OK) return state.SkipWithError("giflib can't read the file");
    Bytes out;
    out.reserve(FileBytes(which).size() * 2);
    double megaPixels = 0;
    for (auto _ : state) {
        out.clear();
        megaPixels = 0;
        GifFileType* gif = EGifOpen(&out, WriteToMemory, nullptr);
        EGifPutScreenDesc(gif, in->SWidth, in->SHeight, in->SColorResolution, 0, in->SColorMap);
        for (int i = 0; i < in->ImageCount; ++i) {
            SavedImage& image = in->SavedImages[i];
            int width = image.ImageDesc.Width;
            EGifPutImageDesc(gif, image.ImageDesc.Left, image.ImageDesc.Top, width, image.ImageDesc.Height, false,
                             image.ImageDesc.ColorMap);
            for (int y = 0; y < image.ImageDesc.Height; ++y) EGifPutLine(gif, image.RasterBits + y * width, width);
            megaPixels += width * image.ImageDesc.Height / 1e6;
        }
        EGifCloseFile(gif, nullptr);
    }
    DGifCloseFile(in, nullptr);
    Report(state, megaPixels);
}

void EveryFile(benchmark::internal::Benchmark* benchmark) {
    for (int i = 0; i < static_cast<int>(std::size(kFiles)); ++i) benchmark->Arg(i);
    benchmark->Unit(benchmark::kMillisecond);
}

BENCHMARK(BM_Decode)->Apply(EveryFile);
BENCHMARK(BM_DecodeGiflib)->Apply(EveryFile);
BENCHMARK(BM_Encode)->Apply(EveryFile);
BENCHMARK(BM_EncodeGiflib)->Apply(EveryFile);

}  // namespace
