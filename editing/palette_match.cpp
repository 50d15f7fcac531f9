#include "editing/palette_match.h"

#include <algorithm>
#include <cstring>

#include "editing/block_queries.h"
#include "gif/descriptor.h"
#include "gif/image_import.h"
#include "imaging/dither.h"
#include "imaging/remap.h"
#include "platform/prompts.h"
#include "resources/string_ids.h"

int paletteChoiceForInsert = kAskForPalette;

namespace {

bool ReportOutOfMemory(WindowHandle owner) {
    ShowMessage(owner, LoadStr(IDS_OUT_OF_MEMORY));
    return false;
}

// All entries of the image's colour table count, also those that its pixels can't reach.
bool PalettesMatch(const Block& header, int bitCount, const RgbTriple* colours) {
    return bitCount <= 8 && memcmp(header.palette, colours, sizeof(RgbTriple) << bitCount) == 0;
}

// Replaces the image's bitmap by one in the header's colours. Not abortable: the press of a hasty double click on the
// dialog's button may still be in the queue.
bool ConvertToPalette(const Block& header, bool dither, Block* image) {
    int depth = DepthOfPacked(GetHeaderFields(header).packed);
    auto convert = dither ? DitherImage : RemapImage;
    MemoryHandle converted = convert(image->data, header.palette, depth, 0);
    if (!converted) return false;
    FreeMemory(image->data);
    image->data = converted;
    memcpy(image->palette, header.palette, kPaletteBytes);
    return true;
}

bool DescribeBitmap(bool needsLocalPalette, Block* image) {
    int width, height, bitCount;
    if (!GetImageInfo(image->data, &width, &height, &bitCount, nullptr)) return false;
    ImageFields fields = GetImageFields(*image);
    fields.width = static_cast<uint16_t>(width);
    fields.height = static_cast<uint16_t>(height);
    fields.packed = WithDepth(fields.packed, std::min(bitCount, 8));
    if (needsLocalPalette) fields.packed |= kHasPalette;
    PutImageFields(image, fields);
    return true;
}

}  // namespace

int AskPaletteChoice(WindowHandle owner, const Block& image) {
    return paletteChoiceForInsert != kAskForPalette ? paletteChoiceForInsert : RunPaletteDialog(owner, image);
}

bool MatchImportedPalette(WindowHandle owner, BlockList* document, Block* image) {
    Block header;
    if (!GetHeader(*document, &header)) return false;
    RgbTriples colours;
    int bitCount;
    if (!GetImageInfo(image->data, nullptr, nullptr, &bitCount, colours)) return false;

    // An image without any palette to be shown in makes a file that nobody can read.
    bool needsLocalPalette = !(GetHeaderFields(header).packed & kHasPalette);
    if (!PalettesMatch(header, bitCount, colours)) {
        int choice = AskPaletteChoice(owner, *image);
        if (choice == kPaletteCancel) return false;
        if (choice == kPaletteRemap || choice == kPaletteDither) {
            bool dither = choice == kPaletteDither && bitCount > 1;
            if (!ConvertToPalette(header, dither, image)) return ReportOutOfMemory(owner);
        }
        needsLocalPalette |= choice == kPaletteKeepAsLocal;
    } else if (paletteChoiceForInsert == kPaletteKeepAsLocal) {
        // Black entries match those that a smaller palette does not even have.
        needsLocalPalette |=
            DepthOfPacked(GetImageFields(*image).packed) > DepthOfPacked(GetHeaderFields(header).packed);
    }
    return DescribeBitmap(needsLocalPalette, image) || ReportOutOfMemory(owner);
}
