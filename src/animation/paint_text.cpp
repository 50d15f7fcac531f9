#include "animation/paint_text.h"

#include "animation/cell_font.h"
#include "gif/descriptor.h"
#include "imaging/text_pieces.h"

namespace {

constexpr int kLeftmostBit = 0x80;

struct TextColours {
    uint32_t foreground, background;
    bool fillsBackground;
};

void PaintCharacter(const CanvasView& canvas, uint8_t character, int left, int top, const TextColours& colours) {
    const Rectangle area =
        Common({left, top, left + kCellWidth, top + kCellHeight}, {0, 0, canvas.width, canvas.height});
    for (int y = area.top; y < area.bottom; ++y) {
        const uint8_t bits = CellRow(character, y - top);
        for (int x = area.left; x < area.right; ++x) {
            if (bits & kLeftmostBit >> (x - left))
                canvas.Row(y)[x] = colours.foreground;
            else if (colours.fillsBackground)
                canvas.Row(y)[x] = colours.background;
        }
    }
}

}  // namespace

Rectangle PaintText(const CanvasView& canvas, const Block& text, const RgbTriple* palette, int transparentIndex) {
    MemoryLock lock(text.data);
    if (!lock) return {};
    const PlainTextFields fields = GetPlainTextFields(text);
    const TextColours colours = {PixelOf(palette[fields.foregroundIndex]), PixelOf(palette[fields.backgroundIndex]),
                                 fields.backgroundIndex != transparentIndex};
    const auto length = static_cast<uint32_t>(std::min<size_t>(text.dataLength, MemorySize(text.data)));
    const auto columns = static_cast<uint32_t>(std::max(0, (canvas.width - fields.left + kCellWidth - 1) / kCellWidth));
    Rectangle drawn;
    TextPiece piece;
    for (TextPieces pieces(lock.Bytes(), length, fields.gridWidth, fields.gridHeight); pieces.Next(&piece);) {
        // cppcheck-suppress redundantAssignment ; nothing is assigned to `fields` here
        const int64_t below = fields.top + int64_t{piece.line} * kCellHeight;
        if (below >= canvas.height) continue;
        const int top = static_cast<int>(below);
        const uint32_t seen = std::min(piece.length, columns);
        for (uint32_t i = 0; i < seen; ++i)
            PaintCharacter(canvas, piece.text[i], fields.left + static_cast<int>(i) * kCellWidth, top, colours);
        drawn = Around(drawn, {fields.left, top, fields.left + static_cast<int>(seen) * kCellWidth, top + kCellHeight});
    }
    return Common(drawn, {0, 0, canvas.width, canvas.height});
}
