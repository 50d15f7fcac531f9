#include "imaging/picture_bitmap.h"

#include <algorithm>
#include <cstring>

#include "imaging/colour_set.h"
#include "imaging/palette_order.h"
#include "imaging/row_packer.h"
#include "imaging/transparency_mask.h"

namespace {

constexpr int kLeastDepthOfColours = 2;  // of what counts as colours, see the header

bool IsTransparent(Rgba colour) {
    return colour.opacity < kLeastOpacity;
}

RgbTriple ColourOf(Rgba colour) {
    return {colour.red, colour.green, colour.blue};
}

uint32_t Opaque(Rgba colour) {
    colour.opacity = 255;
    uint32_t number;
    memcpy(&number, &colour, sizeof number);
    return number;
}

// A picture of colours by number.
class NumberedPicture {
public:
    explicit NumberedPicture(const PictureView& picture) : picture_(picture) {}

    Result<PictureBitmap> Make() {
        FindUsed();
        ChooseTransparent();
        PictureBitmap made;
        made.depth = DepthForColourCount(std::max(static_cast<int>(picture_.colours.size()), lastUsed_ + 1));
        if (transparent_ != kNoTransparentIndex) made.depth = std::max(made.depth, kLeastDepthOfColours);
        made.transparentIndex = transparent_;
        if (!Fill(&made)) return Failure::kNoMemory;
        return made;
    }

private:
    int64_t Pixels() const { return int64_t{picture_.width} * picture_.height; }
    bool IsTransparentIndex(int index) const {
        return static_cast<size_t>(index) < picture_.colours.size() &&
               IsTransparent(picture_.colours[static_cast<size_t>(index)]);
    }

    void FindUsed() {
        const uint8_t* end = picture_.pixels + Pixels();
        for (const uint8_t* pixel = picture_.pixels; pixel < end; ++pixel) isUsed_[*pixel] = true;
        for (int i = 0; i < kPaletteEntries; ++i)
            if (isUsed_[i]) lastUsed_ = i;
    }

    // The first of those that are used and transparent stands for all, in the first opaque colour that is used.
    void ChooseTransparent() {
        for (size_t i = 0; i < picture_.colours.size(); ++i) colours_[i] = ColourOf(picture_.colours[i]);
        for (int i = 0; i < kPaletteEntries; ++i) map_[i] = static_cast<uint8_t>(i);
        int opaque = -1;
        for (int i = lastUsed_; i >= 0; --i) {
            if (!isUsed_[i]) continue;
            if (IsTransparentIndex(i))
                transparent_ = i;
            else
                opaque = i;
        }
        if (transparent_ == kNoTransparentIndex) return;
        for (int i = 0; i < kPaletteEntries; ++i)
            if (IsTransparentIndex(i)) map_[i] = static_cast<uint8_t>(transparent_);
        colours_[transparent_] = opaque < 0 ? RgbTriple{} : colours_[opaque];
    }

    bool Fill(PictureBitmap* made) {
        made->bitmap = CreateImageBitmap(picture_.width, picture_.height, colours_, made->depth);
        const auto width = static_cast<size_t>(picture_.width);
        auto row = AllocateScratch(width);
        ImageWriteLock to(&made->bitmap);
        if (!to || !row) return false;
        const uint8_t* from = picture_.pixels;
        for (int y = 0; y < picture_.height; ++y, from += width) {
            std::transform(from, from + width, row.get(), [&](uint8_t index) { return map_[index]; });
            PackRow(ImageRow(to, y), row.get(), picture_.width, to->bitCount);
        }
        if (transparent_ == kNoTransparentIndex) return true;
        made->mask = MakeTransparencyMask(to, static_cast<uint32_t>(transparent_));
        return static_cast<bool>(made->mask);
    }

    const PictureView& picture_;
    bool isUsed_[kPaletteEntries] = {};
    int lastUsed_ = 0;
    uint8_t map_[kPaletteEntries] = {};
    RgbTriples colours_ = {};
    int transparent_ = kNoTransparentIndex;
};

// A picture whose pixels bring their colours.
class ColouredPicture {
public:
    explicit ColouredPicture(const PictureView& picture) : picture_(picture) {}

    Result<PictureBitmap> Make() {
        PictureBitmap made;
        LookAtColours();
        return (IsFew() ? FillNumbers(&made) : FillColours(&made)) ? Result<PictureBitmap>(made) : Failure::kNoMemory;
    }

private:
    const Rgba* Row(int y) const {
        return reinterpret_cast<const Rgba*>(picture_.pixels) +
               static_cast<size_t>(y) * static_cast<size_t>(picture_.width);
    }
    std::span<const Rgba> RowSpan(int y) const { return {Row(y), static_cast<size_t>(picture_.width)}; }
    bool IsFew() const { return !isMany_ && colours_.Colours().size() + (isTransparent_ ? 1 : 0) <= kPaletteEntries; }

    void LookAtColours() {
        uint32_t last = 0;  // no opaque colour: those that repeat need not be looked up
        for (int y = 0; y < picture_.height && !(isMany_ && isTransparent_); ++y) {
            for (const Rgba pixel : RowSpan(y)) {
                if (IsTransparent(pixel)) {
                    isTransparent_ = true;
                } else if (const uint32_t colour = Opaque(pixel); colour != last && !isMany_) {
                    last = colour;
                    isMany_ = colours_.Number(colour) == ColourSet::kNone;
                }
            }
        }
    }

    // Of transparent pixels, so that no palette is given a colour that nobody sees.
    RgbTriple HiddenColour() const {
        if (colours_.Colours().empty()) return {};
        Rgba first;
        memcpy(&first, colours_.Colours().data(), sizeof first);
        return ColourOf(first);
    }

    bool FillNumbers(PictureBitmap* made) {
        RgbTriples table = {};
        int count = 0;
        for (const uint32_t& colour : colours_.Colours()) {
            const auto* rgb = reinterpret_cast<const uint8_t*>(&colour);
            table[count++] = {rgb[0], rgb[1], rgb[2]};
        }
        if (isTransparent_) {
            made->transparentIndex = count;
            table[count++] = HiddenColour();
        }
        made->depth = std::max(DepthForColourCount(count), kLeastDepthOfColours);
        made->bitmap = CreateImageBitmap(picture_.width, picture_.height, table, made->depth);
        auto indexes = AllocateScratch(static_cast<uint32_t>(picture_.width));
        ImageWriteLock to(&made->bitmap);
        if (!to || !indexes) return false;
        for (int y = 0; y < picture_.height; ++y) {
            uint8_t* index = indexes.get();
            for (const Rgba pixel : RowSpan(y))
                *index++ = static_cast<uint8_t>(IsTransparent(pixel) ? made->transparentIndex
                                                                     : colours_.Number(Opaque(pixel)));
            PackRow(ImageRow(to, y), indexes.get(), picture_.width, to->bitCount);
        }
        if (isTransparent_) made->mask = MakeTransparencyMask(to, static_cast<uint32_t>(made->transparentIndex));
        return !isTransparent_ || made->mask;
    }

    bool FillColours(PictureBitmap* made) {
        made->depth = 24;
        made->bitmap = CreateImageBitmap(picture_.width, picture_.height, nullptr, made->depth);
        ImageWriteLock to(&made->bitmap);
        if (!to) return false;
        const RgbTriple hidden = HiddenColour();
        for (int y = 0; y < picture_.height; ++y) {
            uint8_t* bgr = ImageRow(to, y);
            for (const Rgba pixel : RowSpan(y)) {
                const RgbTriple colour = IsTransparent(pixel) ? hidden : ColourOf(pixel);
                *bgr++ = colour.blue;
                *bgr++ = colour.green;
                *bgr++ = colour.red;
            }
        }
        return !isTransparent_ || FillMask(made);
    }

    bool FillMask(PictureBitmap* made) {
        const RgbTriple blackAndWhite[2] = {{0, 0, 0}, {255, 255, 255}};
        made->mask = CreateImageBitmap(picture_.width, picture_.height, blackAndWhite, 1);
        auto marks = AllocateScratch(static_cast<uint32_t>(picture_.width));
        ImageWriteLock to(&made->mask);
        if (!to || !marks) return false;
        for (int y = 0; y < picture_.height; ++y) {
            std::ranges::transform(RowSpan(y), marks.get(), [](Rgba pixel) { return !IsTransparent(pixel); });
            PackRow(ImageRow(to, y), marks.get(), picture_.width, 1);
        }
        return true;
    }

    const PictureView& picture_;
    ColourSet colours_;
    bool isMany_ = false;
    bool isTransparent_ = false;
};

// How often each index is that of an opaque pixel.
struct IndexCounts {
    int64_t of[kPaletteEntries] = {};
};

// Calls work(indexes, marks) with each row of the bitmap and of its mask, one byte a pixel; what it changes in
// `indexes` is stored when it answers true. False when memory runs out.
template <typename Work>
bool ForEachRow(LockedBitmap bitmap, ConstLockedBitmap mask, Work work) {
    const auto width = static_cast<uint32_t>(bitmap->width);
    auto rows = AllocateScratch(uint64_t{2} * width);
    if (!rows) return false;
    uint8_t* indexes = rows.get();
    uint8_t* marks = indexes + width;
    for (int y = 0; y < bitmap->height; ++y) {
        UnpackRow(indexes, ImageRow(bitmap, y), bitmap->width, bitmap->bitCount);
        UnpackRow(marks, ImageRow(mask, y), bitmap->width, 1);
        if (work(indexes, marks)) PackRow(ImageRow(bitmap, y), indexes, bitmap->width, bitmap->bitCount);
    }
    return true;
}

int ChooseIndex(const IndexCounts& counts, int entries, int wanted) {
    if (wanted >= 0 && wanted < entries && counts.of[wanted] == 0) return wanted;
    int rarest = entries - 1;
    for (int i = entries - 1; i >= 0; --i)
        if (counts.of[i] < counts.of[rarest]) rarest = i;
    return rarest;
}

int NearestOther(ConstLockedBitmap bitmap, int index, int entries) {
    const RgbQuad* colours = ImageColourTable(bitmap);
    int best = -1, bestDistance = 0;
    for (int i = 0; i < entries; ++i) {
        if (i == index) continue;
        const int red = colours[i].red - colours[index].red, green = colours[i].green - colours[index].green,
                  blue = colours[i].blue - colours[index].blue;
        const int distance = red * red + green * green + blue * blue;
        if (best >= 0 && distance >= bestDistance) continue;
        best = i;
        bestDistance = distance;
    }
    return best;
}

}  // namespace

Result<PictureBitmap> MakePictureBitmap(const PictureView& picture) {
    return picture.colours.empty() ? ColouredPicture(picture).Make() : NumberedPicture(picture).Make();
}

Result<PictureBitmap> MakePictureBitmap(const Picture& picture) {
    return MakePictureBitmap({picture.width,
                              picture.height,
                              picture.pixels.get(),
                              {picture.colours, static_cast<size_t>(picture.colourCount)}});
}

int SetTransparentPixels(MemoryHandle* bitmap, const MemoryHandle& mask, int depth, int wanted) {
    ImageWriteLock to(bitmap);
    ImageLock marks(mask);
    if (!to || !marks) return kNoTransparentIndex;
    const int entries = 1 << depth;
    IndexCounts counts;
    auto count = [&](const uint8_t* indexes, const uint8_t* isOpaque) {
        for (int x = 0; x < to->width; ++x) counts.of[indexes[x]] += isOpaque[x];
        return false;
    };
    if (!ForEachRow(to, marks, count)) return kNoTransparentIndex;
    const int chosen = ChooseIndex(counts, entries, wanted);
    const int other = NearestOther(to, chosen, entries);
    auto set = [&](uint8_t* indexes, const uint8_t* isOpaque) {
        for (int x = 0; x < to->width; ++x)
            if (!isOpaque[x])
                indexes[x] = static_cast<uint8_t>(chosen);
            else if (indexes[x] == chosen)
                indexes[x] = static_cast<uint8_t>(other);
        return true;
    };
    return ForEachRow(to, marks, set) ? chosen : kNoTransparentIndex;
}
