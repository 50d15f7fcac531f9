// Where the viewer's images lie on the screen, how they are painted and how they go.
#include "gif/descriptor.h"
#include "imaging/draw/centring.h"
#include "imaging/draw/device_bitmaps.h"
#include "imaging/draw/draw_image.h"
#include "imaging/draw/gdi_guards.h"
#include "imaging/draw/viewer_state.h"

namespace {

struct Placed {
    long left, top, width, height;
};

// The image that is being played, or, when the player has gone on to other blocks, the last one.
Placed ImageOnScreen(const ViewerState& state) {
    if (state.current.kind == kImageBlock) {
        const ImageFields fields = GetImageFields(state.current);
        return {fields.left, fields.top, fields.width, fields.height};
    }
    return {static_cast<long>(state.imageLeft), static_cast<long>(state.imageTop), static_cast<long>(state.imageWidth),
            static_cast<long>(state.imageHeight)};
}

// Where an image begins along one axis: at its place on the logical screen, which is centred in the client area.
long StartOf(long client, long image, long screen, long offset) {
    long centred = image < client ? HalfDown(client - image) : 0;
    return centred + offset - HalfDown(screen - image);
}

// Makes the image's top left corner the origin of `dc`.
Placed PlaceImage(HDC dc, HWND window, const ViewerState& state) {
    const Placed image = ImageOnScreen(state);
    RECT client = {};
    GetClientRect(window, &client);
    long x = StartOf(client.right, image.width, static_cast<long>(state.screenWidth), image.left);
    long y = StartOf(client.bottom, image.height, static_cast<long>(state.screenHeight), image.top);
    SetWindowOrgEx(dc, -x, -y, nullptr);
    return image;
}

// The owner stays in use while the viewer plays: an image that has left the document is not there to be painted.
bool IsInDocument(const BlockList& list, MemoryHandle image) {
    return !ForEachBlock(
        list, [=](const Block& block, uint32_t) { return block.kind != kImageBlock || block.data != image; });
}

// What an exposure makes paint again is not grabbed a second time: by then the image lies on it itself.
void SaveUnder(HDC dc, const Placed& image, ViewerState& state) {
    if (state.disposal != kDisposePrevious || state.savedUnder) return;
    state.savedUnder = GrabScreenArea(dc, {0, 0, image.width, image.height});
}

void DrawCurrentImage(HDC dc, HWND window, ViewerState& state) {
    bool isImage = state.current.kind == kImageBlock;
    uint8_t packed = isImage ? GetImageFields(state.current).packed : uint8_t{0};
    const RgbTriple* palette = packed & kHasPalette ? state.current.palette : state.globalPalette;
    bool interlaced = (packed & kImageInterlaced) != 0;
    if (state.transparentIndex != kNoTransparentIndex)
        DrawImageTransparent(dc, window, state.currentImage, palette, 0, 0, state.transparentIndex, interlaced);
    else if (interlaced)
        DrawImageProgressive(dc, state.currentImage, palette, 0, 0);
    else
        DrawImageStraight(dc, state.currentImage, palette, 0, 0);
}

// A rectangle without an outline lacks its right column and its bottom row.
void FillWithBackground(HDC dc, const Placed& image, HBRUSH brush) {
    SelectedObject fill(dc, brush);
    SelectedObject outline(dc, GetStockObject(NULL_PEN));
    Rectangle(dc, 0, 0, image.width + 1, image.height + 1);
}

}  // namespace

void PaintCurrentImage(HDC dc, HWND window, ViewerState& state) {
    if (!state.currentImage || !IsInDocument(*state.list, state.currentImage)) return;
    SavedDc saved(dc);
    const Placed image = PlaceImage(dc, window, state);
    SaveUnder(dc, image, state);
    DrawCurrentImage(dc, window, state);
}

void DisposeOfImage(HWND window, ViewerState& state) {
    if (state.disposal != kDisposeBackground && state.disposal != kDisposePrevious) return;
    WindowDc dc(window);
    SavedDc saved(dc.Get());
    const Placed image = PlaceImage(dc.Get(), window, state);
    if (state.disposal == kDisposeBackground) return FillWithBackground(dc.Get(), image, state.backgroundBrush);
    DrawDeviceBitmap(dc.Get(), 0, 0, state.savedUnder);
    ForgetSavedUnder(state);
}

void ForgetSavedUnder(ViewerState& state) {
    if (state.savedUnder) DeleteObject(state.savedUnder);
    state.savedUnder = nullptr;
}
