#include "imaging/standard_palette.h"

#include <cstring>

#include "imaging/palette_resources.h"

namespace {

constexpr uint8_t kTwoLevels[] = {0, 255};
constexpr uint8_t kFourLevels[] = {0, 85, 170, 255};
// By whole steps of 36, and the last one of 39; the stored palette with greys has them evenly rounded.
constexpr uint8_t kQuirkEightLevels[] = {0, 36, 72, 108, 144, 180, 216, 255};

constexpr RgbTriple kSixteenColours[] = {
    {0, 0, 0},     {128, 0, 0},     {0, 128, 0},     {128, 128, 0},   {0, 0, 128}, {128, 0, 128},
    {0, 128, 128}, {128, 128, 128}, {192, 192, 192}, {255, 0, 0},     {0, 255, 0}, {255, 255, 0},
    {0, 0, 255},   {255, 0, 255},   {0, 255, 255},   {255, 255, 255},
};

// Every combination of the levels, blue varying fastest, then green.
template <size_t kRed, size_t kGreen, size_t kBlue>
void FillCube(RgbTriple* palette, const uint8_t (&red)[kRed], const uint8_t (&green)[kGreen],
              const uint8_t (&blue)[kBlue]) {
    for (uint8_t r : red)
        for (uint8_t g : green)
            for (uint8_t b : blue) *palette++ = {r, g, b};
}

void FillFromResource(RgbTriple* palette, const char* name) {
    const uint8_t* resource = FindPaletteResource(name);
    if (resource) memcpy(palette, resource + kPaletteResourceColours, kPaletteBytes);
}

struct Size {
    int colours, depth;
};

Size SizeOfKind(int kind) {
    switch (kind) {
        case kPaletteBlackWhite: return {2, 1};
        case kPaletteSixteen: return {16, 4};
        case kPalette32: return {32, 5};
        case kPalette64: return {64, 6};
        case kPalette128: return {128, 7};
        case kPaletteWeb: return {216, 8};
        default: return {256, 8};
    }
}

void Fill(RgbTriple* palette, int kind) {
    switch (kind) {
        case kPaletteBlackWhite: palette[1] = {255, 255, 255}; break;
        case kPaletteSixteen: memcpy(palette, kSixteenColours, sizeof kSixteenColours); break;
        case kPalette32: FillCube(palette, kFourLevels, kFourLevels, kTwoLevels); break;
        case kPalette64: FillCube(palette, kFourLevels, kFourLevels, kFourLevels); break;
        case kPalette128: FillCube(palette, kFourLevels, kQuirkEightLevels, kFourLevels); break;
        case kPaletteWeb: FillFromResource(palette, "PALETTE216"); break;
        case kPaletteCubeGrey: FillFromResource(palette, "PALETTE256G"); break;
        case kPaletteGrey:
            for (int i = 0; i < kPaletteEntries; ++i)
                palette[i].red = palette[i].green = palette[i].blue = static_cast<uint8_t>(i);
            break;
        default: FillCube(palette, kQuirkEightLevels, kQuirkEightLevels, kFourLevels); break;
    }
}

}  // namespace

int StandardPalette(RgbTriple* palette, int* depth, int kind) {
    Size size = SizeOfKind(kind);
    if (depth) *depth = size.depth;
    if (palette) {
        memset(palette, 0, kPaletteBytes);
        Fill(palette, kind);
    }
    return size.colours;
}
