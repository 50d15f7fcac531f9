#include "size/old_image.h"

#include <algorithm>

#include "gif/descriptor.h"
#include "gif/source_bytes.h"
#include "imaging/row_packer.h"

namespace {

constexpr ColourId kUnknown = ColourIds::kMost;  // no colour's number

bool TakePixels(const Block& block, OldImage* old) {
    ImageLock bitmap(block.data);
    const ImageFields fields = GetImageFields(block);
    old->place = {fields.left, fields.top, fields.left + fields.width, fields.top + fields.height};
    if (!bitmap || old->place.IsEmpty() || bitmap->width != fields.width || bitmap->height != fields.height ||
        bitmap->bitCount > 8)
        return false;
    const auto width = static_cast<size_t>(fields.width);
    old->pixels.resize(width * fields.height);
    for (int y = 0; y < fields.height; ++y)
        UnpackRow(&old->pixels[static_cast<size_t>(y) * width], ImageRow(bitmap, y), fields.width, bitmap->bitCount);
    return true;
}

// The numbers of all colours; kUnknown for one that was seen nowhere.
void TakeColours(const Animation& animation, const ColourIds& colours, OldImage* old) {
    const Palette palette = ColoursOf(*old->block, FindGlobalPalette(animation.List()));
    for (int index = 0; index < kPaletteEntries; ++index) {
        if (index == old->transparent) continue;
        const size_t id = colours.Find(PixelOf(palette[index]));
        old->ids[static_cast<size_t>(index)] = id == colours.Pixels().size() ? kUnknown : static_cast<ColourId>(id);
    }
}

// False when a colour in use is unknown: beyond the edge of the screen.
bool TakeUsed(OldImage* old) {
    std::array<bool, 256> isUsed = {};
    for (uint8_t index : old->pixels) isUsed[index] = true;
    old->isUsed = isUsed;
    for (size_t index = 0; index < isUsed.size(); ++index)
        if (isUsed[index] && old->ids[index] == kUnknown) return false;
    return true;
}

void TakeBytes(OldImage* old) {
    SourceLock source(*old->block);
    if (!source || !HasSource(*old->block)) return;
    const uint8_t packed = GetImageFields(*old->block).packed;
    const size_t head = kImageHeadBytes + TableBytesOfPacked(packed);
    if (source.Own().size() <= head) return;
    old->blockBytes = source.Own().size();
    old->data.assign(source.Own().begin() + static_cast<ptrdiff_t>(head), source.Own().end());
}

// Whether pixels drawn leave what is wanted: where nothing is drawn, pixels have to be free. In bits of the numbers'
// own type: many are compared at once.
bool ShowsRow(const ColourId* drawn, const ColourId* wanted, const uint8_t* free, size_t count) {
    ColourId wrong = 0;
    for (size_t x = 0; x < count; ++x) {
        const ColourId isLeft = drawn[x] == kTransparentId;
        const ColourId isHeld = free[x] == 0;
        const ColourId isOther = drawn[x] != wanted[x];
        wrong = static_cast<ColourId>(wrong | (isLeft & isHeld) | ((isLeft ^ 1) & isOther));
    }
    return wrong == 0;
}

// Whether drawing the old image where the plan draws leaves there what the plan wants.
bool Shows(const PlannedFrame& frame, const OldImage& old) {
    const auto boxWidth = static_cast<size_t>(frame.box.Width());
    const auto oldWidth = static_cast<size_t>(old.place.Width());
    const Rectangle both = Common(frame.box, old.place);
    std::vector<ColourId> drawn(boxWidth, kTransparentId);
    for (int y = frame.box.top; y < frame.box.bottom; ++y) {
        const size_t row = static_cast<size_t>(y - frame.box.top) * boxWidth;
        if (y == both.bottom) std::ranges::fill(drawn, kTransparentId);
        if (y >= both.top && y < both.bottom) {
            const uint8_t* from = &old.pixels[static_cast<size_t>(y - old.place.top) * oldWidth +
                                              static_cast<size_t>(both.left - old.place.left)];
            std::transform(from, from + both.Width(), drawn.begin() + (both.left - frame.box.left),
                           [&old](uint8_t index) { return old.ids[index]; });
        }
        if (!ShowsRow(drawn.data(), &frame.ids[row], &frame.free[row], boxWidth)) return false;
    }
    return true;
}

}  // namespace

std::optional<OldImage> FindOldImage(const Animation& animation, const ColourIds& colours, const PlannedFrame& frame) {
    const Frame& old = animation.Frames()[frame.firstFrame];
    OldImage found;
    found.block = &animation.List().blocks[old.block];
    found.transparent = old.transparentIndex;
    if (!TakePixels(*found.block, &found)) return std::nullopt;
    TakeColours(animation, colours, &found);
    // What is disposed of has to be what the plan disposes of.
    const bool clears = frame.disposal == kDisposeBackground && !frame.isLast;
    if (clears && Common(found.place, animation.Screen()) != frame.box) return std::nullopt;
    if (!Shows(frame, found) || !TakeUsed(&found)) return std::nullopt;
    const uint8_t packed = GetImageFields(*found.block).packed;
    found.isInterlaced = (packed & kImageInterlaced) != 0;
    found.hasPalette = (packed & kHasPalette) != 0;
    TakeBytes(&found);
    return found;
}
