#include "editing/palette_match.h"

#include <algorithm>
#include <cstring>

#include "gif/default_blocks.h"
#include "gif/descriptor.h"
#include "imaging/dither.h"
#include "imaging/palette_order.h"
#include "imaging/remap.h"
#include "imaging/shared_palette.h"

namespace {

// An inserted image brings its pixels and not its colours: kept as they are, the pixels are shown in the global ones.
constexpr bool kQuirkKeptPixelsLoseColours = true;

// All entries of the image's colour table count, also those that its pixels can't reach.
bool PalettesMatch(const Block& header, ConstLockedBitmap bitmap) {
    RgbTriples colours;
    if (bitmap->bitCount > 8) return false;
    auto bytes = sizeof(RgbTriple) * static_cast<size_t>(GetImagePalette(bitmap, colours));
    return memcmp(header.palette.Colours(), colours, bytes) == 0;
}

// Replaces the image's bitmap by one in the header's colours. Not to be stopped: the press of a hasty double click on
// the question's button may still be in the queue.
Failure ConvertToPalette(const Block& header, bool dither, Block* image) {
    int depth = DepthOfPacked(GetHeaderFields(header).packed);
    auto convert = dither ? DitherImage : RemapImage;
    Result<MemoryHandle> converted = convert(image->data, header.palette, depth, nullptr);
    if (!converted) return converted.Why();
    image->data = *converted;
    image->palette = header.palette;
    return Failure::kNone;
}

// Makes an image of true colours one of the best 256 of them.
Failure ChooseOwnColours(Block* image) {
    const Result<SharedPalette> chosen = BuildSharedPalette(kPaletteEntries, {&image->data, 1});
    if (!chosen) return chosen.Why();
    const int depth = std::max(DepthForColourCount(chosen->count), 2);  // two colours are not always black and white
    Result<MemoryHandle> converted = RemapTrueColours(image->data, chosen->colours, depth);
    if (!converted) return converted.Why();
    image->data = *converted;
    return image->palette.Set(chosen->colours) ? Failure::kNone : Failure::kNoMemory;
}

// Lets the image have its own colours, the document's, or what is chosen. `*local` tells whether it needs a palette of
// its own then.
Failure FitToDocument(const BlockList& document, const Block& header, Questions& questions, Block* image, bool* local) {
    const uint8_t packed = GetHeaderFields(header).packed;
    // An image without any palette to be shown in makes a file that nobody can read.
    *local = !(packed & kHasPalette);
    ImageLock bitmap(image->data);
    if (!bitmap) return Failure::kNoMemory;
    const bool isTrueColour = bitmap->bitCount > 8;
    // Nothing there to be fitted to: in a document that nothing is lost from, the colours are not, either.
    if (*local && (document.flags & kReadWhole)) return isTrueColour ? ChooseOwnColours(image) : Failure::kNone;
    bool matches = PalettesMatch(header, bitmap);
    if (questions.KeepsColours()) {
        // Black entries match those that a smaller palette does not even have.
        bool fits = DepthOfPacked(GetImageFields(*image).packed) <= DepthOfPacked(packed);
        *local |= !matches || !fits;
        return isTrueColour ? ChooseOwnColours(image) : Failure::kNone;
    }
    PaletteChoice choice = matches ? PaletteChoice::kKeepPixels : questions.ChoosePalette(*image);
    if (choice == PaletteChoice::kCancel) return Failure::kCancelled;
    if (choice == PaletteChoice::kKeepPixels) {
        *local |= !matches && !kQuirkKeptPixelsLoseColours;
        return Failure::kNone;
    }
    return ConvertToPalette(header, choice == PaletteChoice::kDither && bitmap->bitCount > 1, image);
}

Failure DescribeBitmap(bool local, Block* image) {
    std::optional<ImageInfo> info = GetImageInfo(image->data);
    if (!info) return Failure::kNoMemory;
    ImageFields fields = GetImageFields(*image);
    fields.width = static_cast<uint16_t>(info->width);
    fields.height = static_cast<uint16_t>(info->height);
    fields.packed = WithDepth(fields.packed, std::min(info->bitCount, 8));
    if (local) fields.packed |= kHasPalette;
    PutImageFields(image, fields);
    return Failure::kNone;
}

bool NameAfterFile(const std::string& path, Block* block) {
    return SetBlockNameFromUtf8(std::string_view(path).substr(path.find_last_of("/\\:") + 1), block);
}

// Gives the transparent pixels of the picture an index in the image that was made of it. kNoTransparentIndex when
// memory runs out.
int MakeTransparent(const BlockList& document, const FirstImage& picture, Block* image) {
    if (image->data == picture.bitmap) return picture.transparentIndex;  // nothing was converted
    const uint8_t packed = GetImageFields(*image).packed;
    int depth = DepthOfPacked(packed);
    if (!(packed & kHasPalette)) depth = std::min(depth, DepthOfPacked(GetHeaderFields(*FindHeader(document)).packed));
    return SetTransparentPixels(&image->data, picture.mask, depth);
}

// The blocks of `picture`, whose bitmap `image` has so far.
Result<std::vector<Block>> ImportAs(BlockList* document, const FirstImage& picture, Block image, Questions& questions) {
    const Failure failure = MatchImportedPalette(*document, &image, questions);
    if (failure != Failure::kNone) return failure;
    if (!picture.mask) return std::vector{image};
    const int index = MakeTransparent(*document, picture, &image);
    if (index == kNoTransparentIndex) return Failure::kNoMemory;
    return std::vector{MakeControlBlock(document, index), image};
}

}  // namespace

Failure MatchImportedPalette(const BlockList& document, Block* image, Questions& questions) {
    const Block* header = FindHeader(document);
    if (!header) return Failure::kNoBlock;
    bool local;
    Failure failure = FitToDocument(document, *header, questions, image, &local);
    return failure == Failure::kNone ? DescribeBitmap(local, image) : failure;
}

Result<std::vector<Block>> ImportPicture(BlockList* document, const FirstImage& picture, Questions& questions) {
    Result<Block> image = MakeImageBlock(document, picture.bitmap, std::min(picture.depth, 8));
    if (!image) return image.Why();
    return ImportAs(document, picture, *image, questions);
}

Result<std::vector<Block>> ImportImage(BlockList* document, const std::string& path, Questions& questions) {
    Result<FirstImage> picture = ReadFirstImage(path);
    if (!picture) return {picture.Why(), picture.Reason()};
    Result<Block> image = MakeImageBlock(document, picture->bitmap, std::min(picture->depth, 8));
    if (!image) return image.Why();
    if (!NameAfterFile(path, &*image)) return Failure::kNoMemory;
    return ImportAs(document, *picture, *image, questions);
}
