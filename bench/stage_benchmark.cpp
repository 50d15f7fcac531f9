// Composing decoded frames into one canvas, side by side with giflib's frames and a plain compositor. Both have decoded
// the file before the clock starts; Mpixel/s count the pixels of the frames' own rectangles. Run through bench/run.
#include <benchmark/benchmark.h>
#include <gif_lib.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "animation/stage.h"
#include "gif/descriptor.h"
#include "gif/gif_reader.h"

namespace {

const char* const kFiles[] = {"cartoon", "photo", "small", "noise", "many"};

std::string PathOf(benchmark::State& state) {
    const char* folder = getenv("BENCH_FILES");
    state.SetLabel(kFiles[state.range(0)]);
    return std::string(folder ? folder : ".") + "/" + kFiles[state.range(0)] + ".gif";
}

void Report(benchmark::State& state, double pixels) {
    state.counters["Mpixel/s"] =
        benchmark::Counter(pixels * static_cast<double>(state.iterations()) / 1e6, benchmark::Counter::kIsRate);
}

void BM_Compose(benchmark::State& state) {
    BlockList list;
    Animation animation;
    Stage stage;
    if (!CreateBlockList(&list) || ReadGifFile(&list, PathOf(state).c_str()) != kReadDone ||
        !animation.Open(list, Texts::kLeftOut) || !stage.Open(animation, 0))
        return state.SkipWithError("the file can't be read");
    double pixels = 0;
    for (const Frame& frame : animation.Frames()) pixels += static_cast<double>(frame.area.Pixels());
    const auto frames = static_cast<uint32_t>(animation.Frames().size());
    if (frames == 1) return state.SkipWithError("one frame is drawn once");
    for (auto _ : state) {
        for (uint32_t frame = 0; frame < frames; ++frame)
            if (!stage.Show(frame)) return state.SkipWithError("no memory");
        benchmark::DoNotOptimize(stage.Canvas().pixels[0]);
    }
    Report(state, pixels);
}

// The plain way: a colour looked up and a pixel tested at a time.
class PlainCompositor {
public:
    explicit PlainCompositor(GifFileType* gif)
        : gif_(gif), canvas_(static_cast<size_t>(gif->SWidth) * static_cast<size_t>(gif->SHeight)) {}

    void PlayOnce() {
        std::fill(canvas_.begin(), canvas_.end(), 0);
        for (int i = 0; i < gif_->ImageCount; ++i) {
            Draw(i);
            GraphicsControlBlock control = ControlOf(i);
            if (control.DisposalMode == DISPOSE_BACKGROUND) Clear(gif_->SavedImages[i].ImageDesc);
        }
    }
    const uint32_t& First() const { return canvas_[0]; }

private:
    GraphicsControlBlock ControlOf(int i) const {
        GraphicsControlBlock control = {0, false, 0, NO_TRANSPARENT_COLOR};
        DGifSavedExtensionToGCB(gif_, i, &control);
        return control;
    }
    void Draw(int i) {
        const SavedImage& image = gif_->SavedImages[i];
        const ColorMapObject* colours = image.ImageDesc.ColorMap ? image.ImageDesc.ColorMap : gif_->SColorMap;
        const int transparent = ControlOf(i).TransparentColor;
        const GifByteType* index = image.RasterBits;
        for (int y = 0; y < image.ImageDesc.Height; ++y)
            for (int x = 0; x < image.ImageDesc.Width; ++x, ++index) {
                const int column = image.ImageDesc.Left + x, row = image.ImageDesc.Top + y;
                if (*index == transparent || *index >= colours->ColorCount || column >= gif_->SWidth ||
                    row >= gif_->SHeight)
                    continue;
                const GifColorType& colour = colours->Colors[*index];
                At(column, row) = colour.Red | uint32_t{colour.Green} << 8 | uint32_t{colour.Blue} << 16 | 0xFF000000u;
            }
    }
    void Clear(const GifImageDesc& place) {
        for (int y = place.Top; y < std::min(place.Top + place.Height, gif_->SHeight); ++y)
            for (int x = place.Left; x < std::min(place.Left + place.Width, gif_->SWidth); ++x) At(x, y) = 0;
    }
    uint32_t& At(int x, int y) {
        return canvas_[static_cast<size_t>(y) * static_cast<size_t>(gif_->SWidth) + static_cast<size_t>(x)];
    }

    GifFileType* gif_;
    std::vector<uint32_t> canvas_;
};

void BM_ComposeGiflib(benchmark::State& state) {
    GifFileType* gif = DGifOpenFileName(PathOf(state).c_str(), nullptr);
    if (!gif || DGifSlurp(gif) != GIF_OK) return state.SkipWithError("giflib can't read the file");
    PlainCompositor plain(gif);
    double pixels = 0;
    for (int i = 0; i < gif->ImageCount; ++i)
        pixels += 1.0 * gif->SavedImages[i].ImageDesc.Width * gif->SavedImages[i].ImageDesc.Height;
    for (auto _ : state) {
        plain.PlayOnce();
        benchmark::DoNotOptimize(plain.First());
    }
    Report(state, pixels);
    DGifCloseFile(gif, nullptr);
}

BENCHMARK(BM_Compose)->DenseRange(0, 4)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ComposeGiflib)->DenseRange(0, 4)->Unit(benchmark::kMillisecond);

}  // namespace
