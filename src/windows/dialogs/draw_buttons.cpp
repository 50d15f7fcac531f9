#include "windows/dialogs/draw_buttons.h"

#include "imaging/luminance.h"
#include "windows/drawing/gdi_guards.h"
#include "windows/services/careful.h"
#include "windows/services/screen_scale.h"
#include "windows/services/shell_objects.h"

namespace {

constexpr COLORREF kDisabledFace = RGB(128, 128, 128);
constexpr int kTextTop = 5;  // pixels below the button's upper edge, on usual screens
constexpr DWORD kBrushWhereSourceIsSet = 0x00E20746;
constexpr int kIndexTextUnits = 16;
constexpr int kFocusInset = 3;  // pixels of a usual screen

bool IsPressed(const DRAWITEMSTRUCT& item) {
    return (item.itemState & ODS_SELECTED) != 0;
}

bool IsDisabled(const DRAWITEMSTRUCT& item) {
    return (item.itemState & ODS_DISABLED) != 0;
}

void DrawSoftEdge(const DRAWITEMSTRUCT& item) {
    RECT edge = item.rcItem;
    DrawEdge(item.hDC, &edge, IsPressed(item) ? EDGE_SUNKEN : EDGE_RAISED, BF_RECT | BF_SOFT);
}

// Fills the item's rectangle, `larger` pixels wider and higher at the right and the bottom.
void FillItem(const DRAWITEMSTRUCT& item, HGDIOBJ brush, int larger) {
    SavedDc saved(item.hDC);
    SelectObject(item.hDC, GetStockObject(NULL_PEN));
    SelectObject(item.hDC, brush);
    const RECT& r = item.rcItem;
    Rectangle(item.hDC, r.left, r.top, r.right + larger, r.bottom + larger);
}

COLORREF ContrastingText(RgbTriple colour) {
    return IsLight(colour.red, colour.green, colour.blue) ? RGB(0, 0, 0) : RGB(255, 255, 255);
}

// On other screens it stands in the middle.
int TextTop(const DRAWITEMSTRUCT& item) {
    if (DpiOf(item.hwndItem) == kUsualDpi) return item.rcItem.top + kTextTop;
    TEXTMETRICW metric = {};
    GetTextMetricsW(item.hDC, &metric);
    return (item.rcItem.top + item.rcItem.bottom - metric.tmHeight) / 2;
}

void DrawIndex(const DRAWITEMSTRUCT& item, RgbTriple face) {
    wchar_t text[kIndexTextUnits];
    int units = GetWindowTextW(item.hwndItem, text, kIndexTextUnits);
    if (units == 0) return;
    SavedDc saved(item.hDC);
    SetBkMode(item.hDC, TRANSPARENT);
    SetTextColor(item.hDC, ContrastingText(face));
    SetTextAlign(item.hDC, TA_CENTER | TA_TOP);
    TextOutW(item.hDC, (item.rcItem.right - item.rcItem.left) / 2, TextTop(item), text, units);
}

// The squares of a glyph in a bitmap selected into `dc`.
struct Glyph {
    HDC dc;
    int left, size;
    // One row below the middle: the mask lies that much lower in its half.
    int MaskTop() const { return size + 1; }
};

// Where it lies on a button that is not pressed: in the corner on usual screens, otherwise in the middle, as the glyphs
// come in a few sizes only.
POINT CornerOf(const DRAWITEMSTRUCT& item, const Glyph& glyph) {
    const RECT& r = item.rcItem;
    if (DpiOf(item.hwndItem) == kUsualDpi) return {r.left, r.top};
    return {(r.left + r.right - glyph.size) / 2 - 1, (r.top + r.bottom - glyph.size) / 2 - 1};
}

void DrawGlyph(const DRAWITEMSTRUCT& item, const Glyph& glyph) {
    const int offset = 1 + IsPressed(item);
    const POINT corner = CornerOf(item, glyph);
    const int x = corner.x + offset, y = corner.y + offset;
    BitBlt(item.hDC, x, y, glyph.size, glyph.size, glyph.dc, glyph.left, glyph.MaskTop(), MERGEPAINT);
    BitBlt(item.hDC, x, y, glyph.size, glyph.size, glyph.dc, glyph.left, 0, SRCAND);
}

// Engraved: the shape in white, and over it, a pixel up and left, in the shadow colour that `item.hDC` has as brush.
void DrawDisabledGlyph(const DRAWITEMSTRUCT& item, const Glyph& glyph) {
    const int offset = IsPressed(item);
    const POINT corner = CornerOf(item, glyph);
    const int x = corner.x + offset, y = corner.y + offset;
    BitBlt(item.hDC, x + 1, y + 1, glyph.size, glyph.size, glyph.dc, glyph.left, glyph.MaskTop(), MERGEPAINT);
    PatBlt(glyph.dc, glyph.left, glyph.MaskTop(), glyph.size, glyph.size, DSTINVERT);
    BitBlt(item.hDC, x, y, glyph.size, glyph.size, glyph.dc, glyph.left, glyph.MaskTop(), kBrushWhereSourceIsSet);
}

// Behind each bitmap for usual screens come one half as large again and one twice as large.
int LargerBy(int dpi) {
    return dpi < kUsualDpi * 5 / 4 ? 0 : dpi < kUsualDpi * 7 / 4 ? 1 : 2;
}

// Around the text or the glyph, within the edge.
RECT FocusFrame(const DRAWITEMSTRUCT& item) {
    const int inset = ScaledFor(item.hwndItem, kFocusInset);
    RECT frame = item.rcItem;
    InflateRect(&frame, -inset, -inset);
    return frame;
}

bool ShowsFocus(const DRAWITEMSTRUCT& item) {
    return (item.itemState & ODS_FOCUS) != 0 && Careful(Care::kColourButtonsShowFocus);
}

// The system's own dots would vanish on some colours.
void DrawFocusOn(const DRAWITEMSTRUCT& item, RgbTriple face) {
    const RECT frame = FocusFrame(item);
    const OwnedGdiObject brush(CreateSolidBrush(ContrastingText(face)));
    FrameRect(item.hDC, &frame, static_cast<HBRUSH>(brush.Get()));
}

}  // namespace

void DrawColourButton(HWND dialog, const DRAWITEMSTRUCT& item, const RgbTriple* palette, uint8_t index) {
    RgbTriple entry = palette[index];
    COLORREF face = IsDisabled(item) ? kDisabledFace : RGB(entry.red, entry.green, entry.blue);
    auto behind = SendMessageW(dialog, WM_CTLCOLORBTN, reinterpret_cast<WPARAM>(item.hDC),
                               reinterpret_cast<LPARAM>(item.hwndItem));
    if (behind) FillItem(item, reinterpret_cast<HGDIOBJ>(behind), 1);
    OwnedGdiObject brush(CreateSolidBrush(face));
    FillItem(item, brush.Get(), -1);
    DrawSoftEdge(item);
    if (!IsDisabled(item)) DrawIndex(item, entry);
    if (ShowsFocus(item)) DrawFocusOn(item, entry);
}

void DrawBitmapButton(HWND, const DRAWITEMSTRUCT& item, int bitmapId, int glyphIndex) {
    FillRect(item.hDC, &item.rcItem, GetSysColorBrush(COLOR_BTNFACE));
    DrawSoftEdge(item);
    OwnedGdiObject bitmap(LoadBitmapW(hInstance, MAKEINTRESOURCEW(bitmapId + LargerBy(DpiOf(item.hwndItem)))));
    BITMAP about;
    MemoryDc memory(item.hDC);
    if (!memory.Get() || !GetObjectW(bitmap.Get(), sizeof about, &about)) return;

    SavedDc savedMemory(memory.Get()), saved(item.hDC);
    SelectObject(memory.Get(), bitmap.Get());
    SelectObject(item.hDC, GetSysColorBrush(COLOR_BTNSHADOW));
    int size = about.bmHeight / 2;
    Glyph glyph = {memory.Get(), glyphIndex * size, size};
    IsDisabled(item) ? DrawDisabledGlyph(item, glyph) : DrawGlyph(item, glyph);
    if (!ShowsFocus(item)) return;
    const RECT frame = FocusFrame(item);
    DrawFocusRect(item.hDC, &frame);
}
