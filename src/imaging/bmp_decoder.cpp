#include <algorithm>
#include <bit>
#include <cstring>

#include "imaging/image_bitmap.h"
#include "imaging/picture_decoders.h"
#include "imaging/row_packer.h"
#include "platform/bytes.h"

namespace {

using Bytes = std::span<const uint8_t>;

constexpr uint32_t kFileHeaderBytes = 14;
constexpr uint32_t kPixelStartAt = 10;
constexpr uint32_t kOldInfoBytes = 12;    // of OS/2 1.x: short sizes, colours of three bytes
constexpr uint32_t kUsualInfoBytes = 40;  // later ones begin like this one
constexpr uint32_t kLongestInfoBytes = 124;
constexpr uint32_t kInfoWithOpacityBytes = 56;
constexpr uint32_t kLongOldInfoBytes = 64;  // of OS/2 2.x

enum Compression : uint32_t { kPlain = 0, kRunsOf8 = 1, kRunsOf4 = 2, kFields = 3, kFieldsWithOpacity = 6 };

// What the headers say of a file, or of what programs exchange without a file's header before it. Places count from
// the start of the bytes.
struct Layout {
    uint32_t infoStart = kFileHeaderBytes;
    bool guessesOpacity = false;  // in the bits of 32 that no channel has
    uint32_t width = 0, height = 0;
    bool isTopDown = false;
    unsigned bits = 0;
    uint32_t compression = kPlain;
    uint32_t infoBytes = 0;
    uint32_t coloursUsed = 0;
    uint32_t pixelStart = 0;
    uint32_t masks[4] = {};  // of red, green, blue and opacity
};

// The headers, of which the later ones may be shorter than they could be: what is not there is 0.
class Info {
public:
    explicit Info(Bytes bytes) : bytes_(bytes) {}
    uint32_t Word(uint32_t at) const { return at + 2 <= bytes_.size() ? GetWord(&bytes_[at]) : 0; }
    uint32_t DoubleWord(uint32_t at) const { return at + 4 <= bytes_.size() ? GetDoubleWord(&bytes_[at]) : 0; }

private:
    Bytes bytes_;
};

bool IsKnownInfo(uint32_t bytes) {
    return bytes == kOldInfoBytes || (bytes >= 16 && bytes <= kLongestInfoBytes);
}

void ReadOldInfo(const Info& info, Layout* layout) {
    layout->width = info.Word(4);
    layout->height = info.Word(6);
    layout->bits = info.Word(10);
}

void ReadInfo(const Info& info, Layout* layout) {
    const auto height = static_cast<int32_t>(info.DoubleWord(8));
    layout->width = info.DoubleWord(4);
    layout->isTopDown = height < 0;
    layout->height = height < 0 ? 0u - static_cast<uint32_t>(height) : static_cast<uint32_t>(height);
    layout->bits = info.Word(14);
    layout->compression = info.DoubleWord(16);
    layout->coloursUsed = info.DoubleWord(32);
}

bool HasMasks(const Layout& layout) {
    return layout.compression == kFields || layout.compression == kFieldsWithOpacity;
}

// The masks stand behind the first 40 bytes, whether the header counts them as its own or not.
void ReadMasks(Bytes file, Layout* layout) {
    const Info behind(file.subspan(layout->infoStart));
    if (HasMasks(*layout)) {
        for (uint32_t i = 0; i < 3; ++i) layout->masks[i] = behind.DoubleWord(kUsualInfoBytes + 4 * i);
        if (layout->infoBytes >= kInfoWithOpacityBytes || layout->compression == kFieldsWithOpacity)
            layout->masks[3] = behind.DoubleWord(kUsualInfoBytes + 12);
        return;
    }
    const bool isShort = layout->bits == 16;
    layout->masks[0] = isShort ? 0x7C00 : 0xFF0000;
    layout->masks[1] = isShort ? 0x03E0 : 0x00FF00;
    layout->masks[2] = isShort ? 0x001F : 0x0000FF;
    // The fourth byte of 32 bits means nothing in files: some programs write opacity, others whatever was there.
}

// Programs that exchange pictures put opacity into the fourth byte, although nothing says so.
void GuessOpacity(Layout* layout) {
    constexpr uint32_t kUsual[] = {0xFF0000, 0xFF00, 0xFF};
    layout->guessesOpacity =
        layout->bits == 32 && layout->masks[3] == 0 && std::equal(kUsual, kUsual + 3, layout->masks);
    if (layout->guessesOpacity) layout->masks[3] = 0xFF000000;
}

bool FitsCompression(const Layout& layout) {
    switch (layout.compression) {
        case kPlain:
            return layout.bits == 1 || layout.bits == 4 || layout.bits == 8 || layout.bits == 16 || layout.bits == 24 ||
                   layout.bits == 32;
        case kRunsOf8: return layout.bits == 8 && !layout.isTopDown;
        case kRunsOf4: return layout.bits == 4 && !layout.isTopDown;
        case kFields:
        case kFieldsWithOpacity: return layout.bits == 16 || layout.bits == 32;
        default: return false;
    }
}

Failure ReadLayout(Bytes file, Layout* layout) {
    if (file.size() < layout->infoStart + kOldInfoBytes) return Failure::kDamaged;
    layout->infoBytes = GetDoubleWord(&file[layout->infoStart]);
    if (!IsKnownInfo(layout->infoBytes)) return Failure::kNotSupported;
    if (file.size() - layout->infoStart < layout->infoBytes) return Failure::kDamaged;
    const Info info(file.subspan(layout->infoStart, layout->infoBytes));
    if (layout->infoBytes == kOldInfoBytes)
        ReadOldInfo(info, layout);
    else
        ReadInfo(info, layout);
    // Of OS/2, whose numbers 3 and 4 mean other things.
    const bool isOther = layout->infoBytes == kLongOldInfoBytes && layout->compression > kRunsOf4;
    if (isOther || !FitsCompression(*layout)) return Failure::kNotSupported;
    ReadMasks(file, layout);
    return Failure::kNone;
}

size_t ColourBytes(const Layout& layout) {
    return layout.infoBytes == kOldInfoBytes ? 3 : 4;
}

// Colours beyond the end of the file, or of the space before the pixels, stay black.
void ReadColours(Bytes file, const Layout& layout, Picture* picture) {
    const uint32_t most = 1u << layout.bits;
    const uint32_t named = layout.coloursUsed == 0 ? most : std::min(layout.coloursUsed, most);
    const size_t entryBytes = ColourBytes(layout);
    const size_t start = size_t{layout.infoStart} + layout.infoBytes;
    const size_t end = layout.pixelStart > start ? layout.pixelStart : file.size();
    GiveColours(picture, static_cast<int>(named));
    for (uint32_t i = 0; i < named && start + entryBytes * i + 3 <= end; ++i) {
        const uint8_t* bgr = &file[start + entryBytes * i];
        picture->colours[i] = {bgr[2], bgr[1], bgr[0], 255};
    }
}

// The stored rows, the lowest first as a rule.
uint8_t* StoredRow(const Layout& layout, uint32_t number, Picture* picture) {
    return picture->Row(static_cast<int>(layout.isTopDown ? number : layout.height - 1 - number));
}

// One channel of a pixel of 16 or 32 bits, spread over 0 to 255.
class Channel {
public:
    explicit Channel(uint32_t mask) : mask_(mask), shift_(mask ? std::countr_zero(mask) : 0) {
        most_ = mask_ >> shift_;
    }
    bool IsThere() const { return mask_ != 0; }
    uint8_t Of(uint32_t pixel) const {
        if (most_ == 0) return 0;
        const uint64_t value = (pixel & mask_) >> shift_;
        return static_cast<uint8_t>((value * 255 + most_ / 2) / most_);
    }

private:
    uint32_t mask_, most_ = 0;
    int shift_;
};

void TakeFields(const uint8_t* row, const Layout& layout, const Channel* channels, uint8_t* rgba) {
    const size_t pixelBytes = layout.bits / 8;
    for (uint32_t x = 0; x < layout.width; ++x, row += pixelBytes, rgba += 4) {
        const uint32_t pixel = pixelBytes == 2 ? GetWord(row) : GetDoubleWord(row);
        for (int i = 0; i < 3; ++i) rgba[i] = channels[i].Of(pixel);
        rgba[3] = channels[3].IsThere() ? channels[3].Of(pixel) : 255;
    }
}

void TakeTrueColours(const uint8_t* bgr, uint32_t width, uint8_t* rgba) {
    for (uint32_t x = 0; x < width; ++x, bgr += 3, rgba += 4) {
        rgba[0] = bgr[2];
        rgba[1] = bgr[1];
        rgba[2] = bgr[0];
        rgba[3] = 255;
    }
}

// Opacity of 0 in every pixel means that nobody thought of it. Where it is but guessed, some have to be opaque.
void HealOpacity(Picture* picture, uint8_t least) {
    auto* pixels = reinterpret_cast<Rgba*>(picture->pixels.get());
    const std::span all(pixels, static_cast<size_t>(picture->width) * static_cast<size_t>(picture->height));
    if (std::ranges::any_of(all, [=](Rgba pixel) { return pixel.opacity >= least; })) return;
    for (Rgba& pixel : all) pixel.opacity = 255;
}

bool HoldsRows(Bytes pixels, const Layout& layout) {
    const uint64_t rowBytes = RowBytes(layout.width, layout.bits);
    const uint64_t lastRowBytes = (uint64_t{layout.width} * layout.bits + 7) / 8;  // some files lack the padding
    return rowBytes * (layout.height - 1) + lastRowBytes <= pixels.size();
}

Failure ReadRows(Bytes pixels, const Layout& layout, Picture* picture) {
    const uint64_t rowBytes = RowBytes(layout.width, layout.bits);
    const Channel channels[4] = {Channel(layout.masks[0]), Channel(layout.masks[1]), Channel(layout.masks[2]),
                                 Channel(layout.masks[3])};
    for (uint32_t i = 0; i < layout.height; ++i) {
        const uint8_t* row = &pixels[static_cast<size_t>(rowBytes * i)];
        uint8_t* to = StoredRow(layout, i, picture);
        if (layout.bits <= 8)
            UnpackRow(to, row, static_cast<int>(layout.width), static_cast<int>(layout.bits));
        else if (layout.bits == 24)
            TakeTrueColours(row, layout.width, to);
        else
            TakeFields(row, layout, channels, to);
    }
    if (layout.bits == 32 && channels[3].IsThere()) HealOpacity(picture, layout.guessesOpacity ? 255 : 1);
    return Failure::kNone;
}

// Runs of pixels of the same colour, and stretches of single ones. What they leave out has colour 0.
class RunReader {
public:
    RunReader(Bytes pixels, const Layout& layout, Picture* picture)
        : pixels_(pixels), layout_(layout), picture_(picture) {}

    Failure Read() {
        for (int y = 0; y < picture_->height; ++y) memset(picture_->Row(y), 0, picture_->RowBytes());
        while (at_ + 2 <= pixels_.size()) {
            const uint8_t count = pixels_[at_], value = pixels_[at_ + 1];
            at_ += 2;
            if (count > 0) {
                for (uint32_t i = 0; i < count; ++i) Put(NibbleOrByte(value, i));
            } else if (value == kEndOfRow) {
                x_ = 0;
                ++y_;
            } else if (value == kEndOfPicture) {
                return Failure::kNone;
            } else if (!(value == kMove ? Move() : TakeStretch(value))) {
                return Failure::kDamaged;
            }
        }
        return y_ >= layout_.height ? Failure::kNone : Failure::kDamaged;
    }

private:
    static constexpr uint8_t kEndOfRow = 0, kEndOfPicture = 1, kMove = 2;

    uint8_t NibbleOrByte(uint8_t value, uint32_t i) const {
        if (layout_.bits == 8) return value;
        return static_cast<uint8_t>(i % 2 ? value & 15 : value >> 4);
    }

    void Put(uint8_t index) {
        if (y_ < layout_.height && x_ < layout_.width) StoredRow(layout_, y_, picture_)[x_] = index;
        ++x_;
    }

    bool Move() {
        if (at_ + 2 > pixels_.size()) return false;
        x_ += pixels_[at_];
        y_ += pixels_[at_ + 1];
        at_ += 2;
        return true;
    }

    bool TakeStretch(uint32_t count) {
        const size_t bytes = layout_.bits == 8 ? count : (count + 1) / 2;
        if (bytes > pixels_.size() - at_) return false;
        for (uint32_t i = 0; i < count; ++i) Put(NibbleOrByte(pixels_[at_ + (layout_.bits == 8 ? i : i / 2)], i));
        at_ = std::min(at_ + (bytes + 1) / 2 * 2, pixels_.size());
        return true;
    }

    Bytes pixels_;
    const Layout& layout_;
    Picture* picture_;
    size_t at_ = 0;
    uint64_t x_ = 0;
    uint32_t y_ = 0;  // as stored: from the bottom
};

Failure Decode(Bytes file, const Layout& layout, Picture* picture) {
    const Bytes pixels = file.subspan(layout.pixelStart);
    const bool hasRuns = layout.compression == kRunsOf8 || layout.compression == kRunsOf4;
    if (const Failure failure = CheckSize(layout.width, layout.height); failure != Failure::kNone) return failure;
    if (!hasRuns && !HoldsRows(pixels, layout)) return Failure::kDamaged;
    if (layout.bits <= 8) ReadColours(file, layout, picture);
    if (const Failure failure = MakeRoom(picture, layout.width, layout.height); failure != Failure::kNone)
        return failure;
    return hasRuns ? RunReader(pixels, layout, picture).Read() : ReadRows(pixels, layout, picture);
}

// Nothing but the headers tells where the pixels begin.
uint64_t PixelStart(const Layout& layout) {
    uint64_t start = layout.infoBytes;
    if (HasMasks(layout) && layout.infoBytes == kUsualInfoBytes) start += layout.compression == kFields ? 12 : 16;
    const uint64_t usual = layout.bits <= 8 ? 1u << layout.bits : 0;
    const uint64_t colours = layout.coloursUsed == 0 ? usual : layout.coloursUsed;
    return start + colours * ColourBytes(layout);
}

}  // namespace

Failure DecodeBmp(Bytes file, Picture* picture) {
    Layout layout;
    if (const Failure failure = ReadLayout(file, &layout); failure != Failure::kNone) return failure;
    layout.pixelStart = GetDoubleWord(&file[kPixelStartAt]);
    return layout.pixelStart > file.size() ? Failure::kDamaged : Decode(file, layout, picture);
}

Failure DecodeDib(Bytes bytes, Picture* picture) {
    Layout layout;
    layout.infoStart = 0;
    if (const Failure failure = ReadLayout(bytes, &layout); failure != Failure::kNone) return failure;
    GuessOpacity(&layout);
    const uint64_t start = PixelStart(layout);
    if (start > bytes.size()) return Failure::kDamaged;
    layout.pixelStart = static_cast<uint32_t>(start);
    return Decode(bytes, layout, picture);
}
