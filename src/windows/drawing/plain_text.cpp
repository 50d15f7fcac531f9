#include "windows/drawing/plain_text.h"

#include <algorithm>
#include <string_view>

#include "gif/descriptor.h"
#include "imaging/text_pieces.h"
#include "platform/wide_text_win32.h"
#include "windows/drawing/centring.h"
#include "windows/drawing/enlargement.h"
#include "windows/drawing/gdi_guards.h"
#include "windows/drawing/screen_palette.h"

namespace {

constexpr int kFontHeight = 14;

COLORREF ColourOf(RgbTriple colour) {
    return RGB(colour.red, colour.green, colour.blue);
}

void SetTextColours(HDC dc, const Block& header, const PlainTextFields& fields, uint32_t transparentIndex) {
    bool opaque = fields.backgroundIndex != transparentIndex;
    SetTextColor(dc, ColourOf(header.palette[fields.foregroundIndex]));
    SetBkMode(dc, opaque ? OPAQUE : TRANSPARENT);
    SetBkColor(dc, opaque ? ColourOf(header.palette[fields.backgroundIndex]) : 0);
}

int LineHeight(HDC dc) {
    TEXTMETRICW metrics = {};
    GetTextMetricsW(dc, &metrics);
    return metrics.tmHeight;
}

POINT TextOrigin(const HeaderFields& screen, const PlainTextFields& fields, const RECT& frame) {
    return {fields.left - HalfDown(screen.screenWidth - (frame.right - frame.left)),
            fields.top - HalfDown(screen.screenHeight - (frame.bottom - frame.top))};
}

void DrawPieces(HDC dc, POINT origin, int lineHeight, TextPieces pieces) {
    TextPiece piece;
    while (pieces.Next(&piece)) {
        std::wstring text = WideFrom1252({reinterpret_cast<const char*>(piece.text), piece.length});
        TextOutW(dc, origin.x, origin.y + static_cast<int>(piece.line) * lineHeight, text.c_str(),
                 static_cast<int>(text.size()));
    }
}

}  // namespace

void DrawPlainText(HDC dc, HWND window, const Block& block, const RECT* frame, uint32_t transparentIndex) {
    const Block* header = block.owner ? FindHeader(*block.owner) : nullptr;
    if (block.kind != kPlainTextBlock || !header) return;
    MemoryLock text(block.data);
    if (!text) return;

    const HeaderFields screen = GetHeaderFields(*header);
    const PlainTextFields fields = GetPlainTextFields(block);
    // The count of colours stands in for their depth: tables of more than 8 colours realize no palette.
    RealizedPalette realized(dc, header->palette, ColoursOfPacked(screen.packed));
    OwnedGdiObject courier(CreateFontW(kFontHeight, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, L"Courier New"));

    SavedDc saved(dc);
    if (!frame) Enlarge(dc, window);
    const SIZE client = frame ? SIZE{} : EnlargedClient(window);
    const RECT shown = frame ? *frame : RECT{0, 0, client.cx, client.cy};
    SelectObject(dc, frame ? courier.Get() : GetStockObject(ANSI_FIXED_FONT));
    SetTextColours(dc, *header, fields, transparentIndex);
    uint32_t length = std::min(block.dataLength, static_cast<uint32_t>(MemorySize(block.data)));
    DrawPieces(dc, TextOrigin(screen, fields, shown), LineHeight(dc) - (frame ? 1 : 0),
               TextPieces(text.Bytes(), length, fields.gridWidth, fields.gridHeight));
}
