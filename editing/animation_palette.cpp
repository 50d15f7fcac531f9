#include "editing/animation_palette.h"

#include <cstring>

#include "gif/descriptor.h"
#include "gif/first_image.h"
#include "imaging/standard_palette.h"

namespace {

bool TakePaletteOfFile(WindowHandle owner, const std::string& path, AnimationPalette* palette) {
    OwnedMemory image(ReadFirstImage(owner, path.c_str(), &palette->depth));
    if (!GetImageInfo(image.Get(), nullptr, nullptr, nullptr, palette->colours)) return false;
    if (palette->depth > 8) StandardPalette(palette->colours, &palette->depth, kPaletteCube);
    return true;
}

}  // namespace

bool ChooseAnimationPalette(WindowHandle owner, const AnimationSettings& settings, const std::string& firstFile,
                            AnimationPalette* palette) {
    *palette = {};
    if (settings.matching == PaletteMatching::kFirstPalette) return TakePaletteOfFile(owner, firstFile, palette);
    int kind = settings.forWeb ? kPaletteWeb : kPaletteCube;
    if (settings.matching == PaletteMatching::kSixteenColours) kind = kPaletteSixteen;
    StandardPalette(palette->colours, &palette->depth, kind);
    return true;
}

bool SetGlobalPalette(BlockList* document, const AnimationPalette& palette) {
    Block header;
    if (!GetBlock(*document, &header, 0)) return false;
    memcpy(header.palette, palette.colours, kPaletteBytes);
    HeaderFields fields = GetHeaderFields(header);
    fields.packed = WithDepth(fields.packed, palette.depth);
    PutHeaderFields(&header, fields);
    return PutBlock(document, header, 0);
}
