#include "windows/drawing/screen_palette.h"

#include <new>

namespace {

struct FullLogPalette {  // a LOGPALETTE with room for every entry
    WORD version, count;
    PALETTEENTRY entries[kPaletteEntries];
};
static_assert(offsetof(FullLogPalette, entries) == offsetof(LOGPALETTE, palPalEntry), "read as a LOGPALETTE");
constexpr WORD kLogPaletteVersion = 0x300;

void FillRecord(FullLogPalette* record, const RgbTriple* palette, int count) {
    record->version = kLogPaletteVersion;
    record->count = static_cast<WORD>(count);
    for (int i = 0; i < count; ++i) record->entries[i] = {palette[i].red, palette[i].green, palette[i].blue, 0};
}

}  // namespace

bool RealizeImagePalette(HDC dc, const RgbTriple* palette, int depth, ScreenPalette* screen) {
    *screen = {};
    if (depth < 1 || depth > 8) return false;
    auto* record = new (std::nothrow) FullLogPalette;
    if (!record) return false;
    screen->record = record;
    FillRecord(record, palette, 1 << BitCountForDepth(depth));
    screen->created = CreatePalette(reinterpret_cast<const LOGPALETTE*>(record));
    if (!screen->created) {
        ReleaseImagePalette(dc, screen);
        return false;
    }
    screen->previous = SelectPalette(dc, screen->created, FALSE);
    RealizePalette(dc);
    return true;
}

void ReleaseImagePalette(HDC dc, ScreenPalette* screen) {
    delete static_cast<FullLogPalette*>(screen->record);
    if (screen->previous) SelectPalette(dc, screen->previous, FALSE);
    if (screen->created) DeleteObject(screen->created);
    *screen = {};
}
