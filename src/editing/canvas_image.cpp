#include "editing/canvas_image.h"

#include <algorithm>
#include <cstring>

#include "animation/animation.h"
#include "gif/descriptor.h"
#include "imaging/colour_set.h"
#include "imaging/nearest_colour.h"
#include "imaging/palette_order.h"
#include "imaging/row_packer.h"
#include "imaging/shared_palette.h"

namespace {

RgbTriple ColourOf(uint32_t pixel) {
    uint8_t bytes[4];
    memcpy(bytes, &pixel, sizeof pixel);
    return {bytes[0], bytes[1], bytes[2]};
}

// The colours that an image is to have and the numbers that stand for them.
struct Colouring {
    ColourSet colours;
    uint8_t numbers[kPaletteEntries] = {};  // of each of them
    int transparentIndex = kNoTransparency;
    bool isOwn = false;  // the numbers are those of `own`, not of the global palette
    RgbTriples own = {};
    int depth = 0;
};

// The work on one image.
class ImageMaker {
public:
    ImageMaker(const CanvasView& before, const CanvasView& wanted, const Rectangle& area, const GlobalPalette& global)
        : before_(before), wanted_(wanted), area_(area), global_(global) {}

    Result<CanvasImage> Make();

private:
    void Look();
    bool TakeColours(bool all, Colouring* colouring) const;
    bool UseGlobalPalette(bool isTransparent, Colouring* colouring) const;
    bool UseOwnPalette(bool isTransparent, Colouring* colouring) const;
    bool Choose(bool all, Colouring* colouring, bool (ImageMaker::*use)(bool, Colouring*) const) const;
    Result<CanvasImage> Draw(Colouring& colouring) const;
    Result<CanvasImage> DrawNearest() const;
    MemoryHandle TrueColours() const;
    bool Settle(RgbTriple* colours, int count) const;
    Result<CanvasImage> Finish(const MemoryHandle& bitmap, const Palette& own, int depth, int transparentIndex) const;

    bool IsSame(int x, int y) const { return before_.Row(y)[x] == wanted_.Row(y)[x]; }
    // Calls `what` with each place of the area.
    template <typename What>
    bool AllPlaces(What what) const {
        for (int y = area_.top; y < area_.bottom; ++y)
            for (int x = area_.left; x < area_.right; ++x)
                if (!what(x, y)) return false;
        return true;
    }

    const CanvasView& before_;
    const CanvasView& wanted_;
    Rectangle area_;
    const GlobalPalette& global_;
    bool staysSomewhere_ = false;      // some pixels are as before,
    bool isTransparentThere_ = false;  // and some of those transparent
};

void ImageMaker::Look() {
    (void)AllPlaces([this](int x, int y) {
        staysSomewhere_ |= IsSame(x, y);
        isTransparentThere_ |= wanted_.Row(y)[x] == kTransparent;
        return true;
    });
}

// Of all pixels, or of those that change. False when they are too many.
bool ImageMaker::TakeColours(bool all, Colouring* colouring) const {
    return AllPlaces([&](int x, int y) {
        return (!all && IsSame(x, y)) || colouring->colours.Number(wanted_.Row(y)[x]) != ColourSet::kNone;
    });
}

// An index that no pixel has is the one for transparency.
bool ImageMaker::UseGlobalPalette(bool isTransparent, Colouring* colouring) const {
    if (global_.depth == 0) return false;
    bool isUsed[kPaletteEntries] = {};
    uint8_t* number = colouring->numbers;
    for (uint32_t pixel : colouring->colours.Colours()) {
        const RgbTriple colour = ColourOf(pixel);
        const int index = ExactColour(colour.red, colour.green, colour.blue, global_.colours, global_.depth);
        if (index < 0) return false;
        isUsed[index] = true;
        *number++ = static_cast<uint8_t>(index);
    }
    colouring->depth = global_.depth;
    if (!isTransparent) return true;
    const std::span<bool> used(isUsed, size_t{1} << global_.depth);
    colouring->transparentIndex = static_cast<int>(std::ranges::find(used, false) - used.begin());
    return colouring->transparentIndex < static_cast<int>(used.size());
}

// NOLINTNEXTLINE(readability-convert-member-functions-to-static): it is called in the way that UseGlobalPalette is
bool ImageMaker::UseOwnPalette(bool isTransparent, Colouring* colouring) const {
    int count = 0;
    for (uint32_t pixel : colouring->colours.Colours()) {
        colouring->numbers[count] = static_cast<uint8_t>(count);
        colouring->own[count++] = ColourOf(pixel);
    }
    if (isTransparent) colouring->transparentIndex = count++;
    colouring->isOwn = true;
    colouring->depth = DepthForColourCount(count);
    return count <= kPaletteEntries;
}

bool ImageMaker::Choose(bool all, Colouring* colouring, bool (ImageMaker::*use)(bool, Colouring*) const) const {
    *colouring = {};
    if (all && isTransparentThere_) return false;
    return TakeColours(all, colouring) && (this->*use)(!all && staysSomewhere_, colouring);
}

// A global palette costs nothing, and pixels that need not be drawn cost little.
Result<CanvasImage> ImageMaker::Make() {
    Look();
    auto colouring = AllocateScratchObject<Colouring>();
    if (!colouring) return Failure::kNoMemory;
    for (auto use : {&ImageMaker::UseGlobalPalette, &ImageMaker::UseOwnPalette})
        for (bool all : {false, true})
            if (Choose(all, colouring.get(), use)) return Draw(*colouring);
    return DrawNearest();
}

Result<CanvasImage> ImageMaker::Draw(Colouring& colouring) const {
    Palette own;
    if (colouring.isOwn && !own.Set(colouring.own)) return Failure::kNoMemory;
    MemoryHandle bitmap =
        CreateImageBitmap(area_.Width(), area_.Height(), colouring.isOwn ? own : global_.colours, colouring.depth);
    std::unique_ptr<uint8_t[]> row = AllocateScratch(static_cast<uint64_t>(area_.Width()));
    ImageWriteLock lock(&bitmap);
    if (!lock || !row) return Failure::kNoMemory;
    for (int y = area_.top; y < area_.bottom; ++y) {
        for (int x = area_.left; x < area_.right; ++x) {
            const bool isLeft = colouring.transparentIndex != kNoTransparency && IsSame(x, y);
            row[static_cast<size_t>(x - area_.left)] =
                isLeft ? static_cast<uint8_t>(colouring.transparentIndex)
                       : colouring.numbers[colouring.colours.Number(wanted_.Row(y)[x])];
        }
        PackRow(ImageRow(lock, y - area_.top), row.get(), area_.Width(), lock->bitCount);
    }
    return Finish(bitmap, own, colouring.depth, colouring.transparentIndex);
}

// The pixels that change; the others have the colour of one of those.
MemoryHandle ImageMaker::TrueColours() const {
    constexpr int kTrueColour = 24;
    MemoryHandle bitmap = CreateImageBitmap(area_.Width(), area_.Height(), nullptr, kTrueColour);
    ImageWriteLock lock(&bitmap);
    if (!lock) return nullptr;
    uint32_t pixel = 0;
    (void)AllPlaces([&](int x, int y) {
        if (!IsSame(x, y)) pixel = wanted_.Row(y)[x];
        return IsSame(x, y);
    });
    (void)AllPlaces([&](int x, int y) {
        if (!IsSame(x, y)) pixel = wanted_.Row(y)[x];
        const RgbTriple colour = ColourOf(pixel);
        SetImagePixel(lock, x - area_.left, y - area_.top,
                      static_cast<uint32_t>(colour.red | colour.green << 8 | colour.blue << 16));
        return true;
    });
    return bitmap;
}

// Moves each colour to the mean of the changing pixels that are nearest to it, and once more (S. P. Lloyd, "Least
// squares quantization in PCM", 1982). The cut alone leaves white grounds a little grey, as it looks at 5 bits a
// channel. False when memory runs out.
bool ImageMaker::Settle(RgbTriple* colours, int count) const {
    constexpr int kRounds = 2;
    std::unique_ptr<uint32_t[]> room = AllocateScratchArray<uint32_t>(area_.Pixels());
    if (!room) return false;
    uint32_t* end = room.get();
    (void)AllPlaces([&](int x, int y) {
        if (!IsSame(x, y)) *end++ = wanted_.Row(y)[x];
        return true;
    });
    std::sort(room.get(), end);
    for (int round = 0; round < kRounds; ++round) {
        struct Sum {
            uint64_t red, green, blue, pixels;
        } sums[kPaletteEntries] = {};
        for (const uint32_t *pixel = room.get(), *next; pixel != end; pixel = next) {
            next = std::upper_bound(pixel, static_cast<const uint32_t*>(end), *pixel);
            const auto pixels = static_cast<uint64_t>(next - pixel);
            const RgbTriple colour = ColourOf(*pixel);
            Sum& sum = sums[NearestColour(colour.red, colour.green, colour.blue, colours, count)];
            sum.red += colour.red * pixels;
            sum.green += colour.green * pixels;
            sum.blue += colour.blue * pixels;
            sum.pixels += pixels;
        }
        for (int i = 0; i < count; ++i) {
            const auto mean = [n = sums[i].pixels](uint64_t sum) { return static_cast<uint8_t>((sum + n / 2) / n); };
            if (sums[i].pixels) colours[i] = {mean(sums[i].red), mean(sums[i].green), mean(sums[i].blue)};
        }
    }
    return true;
}

// More than 256 colours change, or 256 beside transparent pixels.
Result<CanvasImage> ImageMaker::DrawNearest() const {
    const int room = staysSomewhere_ ? kPaletteEntries - 1 : kPaletteEntries;
    const MemoryHandle changing = TrueColours();
    if (!changing) return Failure::kNoMemory;
    Result<SharedPalette> shared = BuildSharedPalette(room, {&changing, 1});
    Palette palette;
    if (!shared || !Settle(shared->colours, shared->count) || !palette.Set(shared->colours)) return Failure::kNoMemory;
    MemoryHandle bitmap = CreateImageBitmap(area_.Width(), area_.Height(), palette, 8);
    ImageWriteLock lock(&bitmap);
    if (!lock) return Failure::kNoMemory;
    struct Found {
        uint32_t pixel = kTransparent;
        uint8_t index = 0;
    };
    constexpr uint32_t kRemembered = 1024;  // lookups: neighbours have the same colours
    Found found[kRemembered] = {};
    (void)AllPlaces([&](int x, int y) {
        const uint32_t pixel = wanted_.Row(y)[x];
        auto index = static_cast<uint8_t>(room);
        if (!IsSame(x, y)) {
            Found& known = found[pixel * 0x9E3779B1u >> 22];
            const RgbTriple colour = ColourOf(pixel);
            if (known.pixel != pixel) {
                const int nearest = NearestColour(colour.red, colour.green, colour.blue, palette, shared->count);
                known = {pixel, static_cast<uint8_t>(nearest)};
            }
            index = known.index;
        }
        ImageRow(lock, y - area_.top)[x - area_.left] = index;
        return true;
    });
    Result<CanvasImage> made = Finish(bitmap, palette, 8, staysSomewhere_ ? room : kNoTransparency);
    made->isExact = false;
    return made;
}

Result<CanvasImage> ImageMaker::Finish(const MemoryHandle& bitmap, const Palette& own, int depth,
                                       int transparentIndex) const {
    CanvasImage made;
    made.image.kind = kImageBlock;
    made.image.data = bitmap;
    made.image.palette = own;
    made.transparentIndex = transparentIndex;
    const auto packed = WithDepth(own.HasColours() ? kHasPalette : uint8_t{0}, depth);
    PutImageFields(&made.image, {static_cast<uint16_t>(area_.left), static_cast<uint16_t>(area_.top),
                                 static_cast<uint16_t>(area_.Width()), static_cast<uint16_t>(area_.Height()), packed});
    return made;
}

}  // namespace

Result<CanvasImage> MakeCanvasImage(const CanvasView& before, const CanvasView& wanted, const Rectangle& area,
                                    const GlobalPalette& global) {
    return ImageMaker(before, wanted, area, global).Make();
}
