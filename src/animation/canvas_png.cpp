#include "animation/canvas_png.h"

#include <algorithm>
#include <bit>

#include "gif/descriptor.h"
#include "imaging/row_packer.h"

namespace {

constexpr uint32_t kOpacity = std::endian::native == std::endian::little ? 0xFF000000 : 0x000000FF;

uint32_t Shown(uint32_t pixel, uint32_t background) {
    return pixel == kTransparent ? background : pixel;
}

// Numbers the colours of a row. Runs of one colour are looked up once. False when there are too many.
bool NumberRow(const uint32_t* pixels, size_t count, uint32_t background, ColourSet* colours, uint8_t* numbers) {
    uint32_t last = pixels[0];
    int number = colours->Number(Shown(last, background));
    for (size_t x = 0; x < count; ++x) {
        if (pixels[x] != last) {
            last = pixels[x];
            number = colours->Number(Shown(last, background));
        }
        if (number == ColourSet::kNone) return false;
        numbers[x] = static_cast<uint8_t>(number);
    }
    return true;
}

// The picture as numbers of `colours`; none when it has too many or there is no memory.
std::unique_ptr<uint8_t[]> NumberPixels(const CanvasView& canvas, const Rectangle& area, uint32_t background,
                                        ColourSet* colours) {
    const auto width = static_cast<size_t>(area.Width());
    std::unique_ptr<uint8_t[]> numbers = AllocateScratch(area.Pixels());
    uint8_t* to = numbers.get();
    for (int y = area.top; numbers && y < area.bottom; ++y, to += width)
        if (!NumberRow(canvas.Row(y) + area.left, width, background, colours, to)) numbers.reset();
    return numbers;
}

bool IsOpaque(const CanvasView& canvas, const Rectangle& area, uint32_t background) {
    uint32_t all = kOpacity;
    for (int y = area.top; y < area.bottom; ++y)
        for (int x = area.left; x < area.right; ++x) all &= Shown(canvas.Row(y)[x], background);
    return (all & kOpacity) == kOpacity;
}

PngLayout LayoutOf(const Rectangle& area, PngForm form, int level) {
    PngLayout layout;
    layout.width = static_cast<uint32_t>(area.Width());
    layout.height = static_cast<uint32_t>(area.Height());
    layout.form = form;
    layout.level = level;
    return layout;
}

bool EncodeNumbers(const uint8_t* numbers, const Rectangle& area, std::span<const uint32_t> colours, int level,
                   ByteBuffer* out) {
    PngLayout layout = LayoutOf(area, PngForm::kIndexed, level);
    layout.colours = colours;
    PngWriter writer;
    bool done = writer.Start(layout, out);
    for (int y = 0; done && y < area.Height(); ++y, numbers += area.Width()) done = writer.AddRow(numbers);
    return done && writer.Finish();
}

bool EncodePixels(const CanvasView& canvas, const Rectangle& area, PngForm form, const PngStyle& style,
                  ByteBuffer* out) {
    const auto width = static_cast<size_t>(area.Width());
    std::unique_ptr<uint32_t[]> row = AllocateScratchArray<uint32_t>(width);
    PngWriter writer;
    bool done = row && writer.Start(LayoutOf(area, form, style.level), out);
    for (int y = area.top; done && y < area.bottom; ++y) {
        const uint32_t* pixels = canvas.Row(y) + area.left;
        for (size_t x = 0; x < width; ++x) row[x] = Shown(pixels[x], style.background);
        done = writer.AddRow(reinterpret_cast<const uint8_t*>(row.get()));
    }
    return done && writer.Finish();
}

bool AddPalette(const RgbTriple* palette, int count, ColourSet* colours) {
    for (int i = 0; i < count; ++i)
        if (colours->Number(PixelOf(palette[i])) == ColourSet::kNone) return false;
    return true;
}

bool AddBlockColours(const Block& block, const GlobalPalette& global, ColourSet* colours) {
    if (block.kind == kImageBlock) {
        std::optional<ImageInfo> info = GetImageInfo(block.data);
        return !info || info->bitCount > 8 || AddPalette(ColoursOf(block, global), 1 << info->bitCount, colours);
    }
    if (block.kind != kPlainTextBlock) return true;
    const PlainTextFields text = GetPlainTextFields(block);
    return AddPalette(global.colours.Colours() + text.foregroundIndex, 1, colours) &&
           AddPalette(global.colours.Colours() + text.backgroundIndex, 1, colours);
}

}  // namespace

bool EncodeCanvas(const CanvasView& canvas, const Rectangle& area, const PngStyle& style, ByteBuffer* out) {
    ColourSet colours;
    if (std::unique_ptr<uint8_t[]> numbers = NumberPixels(canvas, area, style.background, &colours))
        return EncodeNumbers(numbers.get(), area, colours.Colours(), style.level, out);
    const PngForm form = IsOpaque(canvas, area, style.background) ? PngForm::kOpaque : PngForm::kFull;
    return EncodePixels(canvas, area, form, style, out);
}

bool EncodeCanvasAs(ColourSet* colours, const CanvasView& canvas, const Rectangle& area, const PngStyle& style,
                    ByteBuffer* out) {
    CanvasRows rows;
    bool done =
        rows.Start(static_cast<uint32_t>(area.Width()), static_cast<uint32_t>(area.Height()), colours, style, out);
    for (int y = area.top; done && y < area.bottom; ++y) done = rows.Add(canvas.Row(y) + area.left);
    return done && rows.Finish();
}

bool ColoursOfAnimation(const Animation& animation, uint32_t background, ColourSet* colours) {
    const GlobalPalette global = FindGlobalPalette(animation.List());
    if (colours->Number(background) == ColourSet::kNone) return false;
    return std::ranges::all_of(animation.List().All(),
                               [&](const Block& block) { return AddBlockColours(block, global, colours); });
}

bool EncodeImage(const Block& image, const RgbTriple* palette, int transparentIndex, const PngStyle& style,
                 ByteBuffer* out) {
    ImageLock bitmap(image.data);
    if (!bitmap || bitmap->bitCount > 8) return false;
    const Rectangle area = {0, 0, bitmap->width, bitmap->height};
    uint32_t colours[kPaletteEntries];
    for (int i = 0; i < kPaletteEntries; ++i)
        colours[i] = i == transparentIndex ? style.background : PixelOf(palette[i]);
    PngLayout layout = LayoutOf(area, PngForm::kIndexed, style.level);
    layout.colours = {colours, size_t{1} << bitmap->bitCount};
    std::unique_ptr<uint8_t[]> indices = AllocateScratch(static_cast<uint64_t>(bitmap->width));
    PngWriter writer;
    bool done = indices && writer.Start(layout, out);
    for (int y = 0; done && y < bitmap->height; ++y) {
        UnpackRow(indices.get(), ImageRow(bitmap, y), bitmap->width, bitmap->bitCount);
        done = writer.AddRow(indices.get());
    }
    return done && writer.Finish();
}

bool CanvasRows::Start(uint32_t width, uint32_t height, ColourSet* colours, const PngStyle& style, ByteBuffer* out) {
    colours_ = colours;
    background_ = style.background;
    width_ = width;
    row_ = AllocateScratch(uint64_t{width} * sizeof(uint32_t));
    PngLayout layout;
    layout.width = width;
    layout.height = height;
    layout.form = colours ? PngForm::kIndexed : PngForm::kFull;
    if (colours) layout.colours = colours->Colours();
    layout.level = style.level;
    return row_ && writer_.Start(layout, out);
}

bool CanvasRows::Add(const uint32_t* pixels) {
    if (colours_) {
        if (!NumberRow(pixels, width_, background_, colours_, row_.get())) return false;
    } else {
        for (uint32_t x = 0; x < width_; ++x) {
            const uint32_t pixel = Shown(pixels[x], background_);
            memcpy(row_.get() + size_t{x} * sizeof pixel, &pixel, sizeof pixel);
        }
    }
    return writer_.AddRow(row_.get());
}
