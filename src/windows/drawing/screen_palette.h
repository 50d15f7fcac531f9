// Colours of a document on screens that have a palette of their own.
#pragma once

#include "imaging/image_bitmap.h"
#include "platform/windows_api.h"

// What RealizeImagePalette has to give back; all null when nothing was made.
struct ScreenPalette {
    void* record;       // the LOGPALETTE
    HPALETTE previous;  // what the device context had selected
    HPALETTE created;
};

// Selects and realizes the first 1 << BitCountForDepth(depth) colours of `palette` in `dc`, where there must be as
// many. False, with nothing to release, for depths that have no palette (below 1 and above 8) and on failure.
bool RealizeImagePalette(HDC dc, const RgbTriple* palette, int depth, ScreenPalette* screen);

// Takes back what RealizeImagePalette did, whatever it returned.
void ReleaseImagePalette(HDC dc, ScreenPalette* screen);

// A realized palette for the length of a scope.
class RealizedPalette {
public:
    RealizedPalette(HDC dc, const RgbTriple* palette, int depth) : dc_(dc) {
        RealizeImagePalette(dc, palette, depth, &screen_);
    }
    ~RealizedPalette() { ReleaseImagePalette(dc_, &screen_); }
    RealizedPalette(const RealizedPalette&) = delete;
    RealizedPalette& operator=(const RealizedPalette&) = delete;

private:
    HDC dc_;
    ScreenPalette screen_;
};
