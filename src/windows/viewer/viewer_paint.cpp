// Where the viewer's images lie on the screen, how they are painted and how they go.
#include "gif/descriptor.h"
#include "windows/drawing/centring.h"
#include "windows/drawing/device_bitmaps.h"
#include "windows/drawing/draw_image.h"
#include "windows/drawing/enlargement.h"
#include "windows/drawing/gdi_guards.h"
#include "windows/viewer/viewer_state.h"

namespace {

// Where an image begins along one axis: at its place on the logical screen, which is centred in the client area.
long StartOf(long client, long image, long screen, long offset) {
    long centred = image < client ? HalfDown(client - image) : 0;
    return centred + offset - HalfDown(screen - image);
}

struct Size {
    int width, height;
};

// The last image's; what is being played may be another block by now.
Size SizeOfImage(const ViewerState& state) {
    return {static_cast<int>(state.imageWidth), static_cast<int>(state.imageHeight)};
}

// Where the image's top left corner is, in pixels of the document: on dense screens those are larger than the screen's.
POINT CornerOfImage(HWND window, const ViewerState& state) {
    const auto [width, height] = SizeOfImage(state);
    const SIZE client = EnlargedClient(window);
    return {StartOf(client.cx, width, static_cast<long>(state.screenWidth), static_cast<long>(state.imageLeft)),
            StartOf(client.cy, height, static_cast<long>(state.screenHeight), static_cast<long>(state.imageTop))};
}

// Makes the image's top left corner the origin of `dc`, which then counts in pixels of the document.
void PlaceImage(HDC dc, HWND window, const ViewerState& state) {
    const POINT corner = CornerOfImage(window, state);
    Enlarge(dc, window);
    SetWindowOrgEx(dc, -corner.x, -corner.y, nullptr);
}

// The same, but `dc` goes on counting in its own pixels. Returns how many of them the image has.
Size PlaceInPixels(HDC dc, HWND window, const ViewerState& state) {
    const int factor = EnlargementOf(window);
    const POINT corner = CornerOfImage(window, state);
    const auto [width, height] = SizeOfImage(state);
    SetWindowOrgEx(dc, -corner.x * factor, -corner.y * factor, nullptr);
    return {width * factor, height * factor};
}

// The owner stays in use while the viewer plays: an image that has left the document is not there to be painted.
Block* FindInDocument(const ViewerState& state) {
    for (Block& block : state.list->All())
        if (block.kind == kImageBlock && block.data == state.currentImage) return &block;
    return nullptr;
}

// The bitmap in the document gets the colours that it is shown in. The viewer lets go of its own share for that moment:
// it must not be a reason to copy the pixels.
bool GiveColours(Block* image, ViewerState& state) {
    state.currentImage = {};
    bool given = AdoptColours(&image->data, state.imagePalette);
    state.currentImage = image->data;
    return given;
}

// What an exposure makes paint again is not grabbed a second time: by then the image lies on it itself.
void SaveUnder(HDC dc, HWND window, ViewerState& state) {
    if (state.disposal != kDisposePrevious || state.savedUnder) return;
    SavedDc saved(dc);
    const auto [width, height] = PlaceInPixels(dc, window, state);
    state.savedUnder = GrabScreenArea(dc, {0, 0, width, height});
}

void DrawCurrentImage(HDC dc, Block* image, ViewerState& state) {
    if (state.imageTransparentIndex != kNoTransparentIndex) {
        DrawImageTransparent(dc, state.currentImage, 0, 0, state.imageTransparentIndex, state.imageInterlaced);
        return;
    }
    if (!GiveColours(image, state)) return;
    auto draw = state.imageInterlaced ? DrawImageProgressive : DrawImageStraight;
    draw(dc, &state.currentImage, nullptr, 0, 0);
}

// A rectangle without an outline lacks its right column and its bottom row.
void FillWithBackground(HDC dc, Size image, HBRUSH brush) {
    SelectedObject fill(dc, brush);
    SelectedObject outline(dc, GetStockObject(NULL_PEN));
    Rectangle(dc, 0, 0, image.width + 1, image.height + 1);
}

}  // namespace

void PaintCurrentImage(HDC dc, HWND window, ViewerState& state) {
    Block* image = state.currentImage ? FindInDocument(state) : nullptr;
    if (!image) return;
    SavedDc saved(dc);
    SaveUnder(dc, window, state);
    PlaceImage(dc, window, state);
    DrawCurrentImage(dc, image, state);
}

void DisposeOfImage(HWND window, ViewerState& state) {
    if (state.disposal != kDisposeBackground && state.disposal != kDisposePrevious) return;
    WindowDc dc(window);
    SavedDc saved(dc.Get());
    const Size image = PlaceInPixels(dc.Get(), window, state);
    if (state.disposal == kDisposeBackground) return FillWithBackground(dc.Get(), image, state.backgroundBrush);
    DrawDeviceBitmap(dc.Get(), 0, 0, state.savedUnder);
    ForgetSavedUnder(state);
}

void ForgetSavedUnder(ViewerState& state) {
    if (state.savedUnder) DeleteObject(state.savedUnder);
    state.savedUnder = nullptr;
}
