// The text of a plain-text block, cut into the pieces that are drawn.
#pragma once

#include <cstdint>

struct TextPiece {
    const uint8_t* text;
    uint32_t length;  // may be 0
    uint32_t line;    // on which to draw it, from 0
};

// A piece ends at the width of the grid or at the first byte below 32; all such bytes behind it are skipped, and each
// carriage return among them starts a new line. What does not fit on a line goes on at the same place, over the line's
// own beginning. The text ends with the last line of the grid; a grid without lines gets one piece.
class TextPieces {
public:
    // `gridWidth` and `gridHeight` in characters. `text` must stay readable.
    TextPieces(const uint8_t* text, uint32_t length, uint16_t gridWidth, uint16_t gridHeight)
        : next_(text), left_(length), gridWidth_(gridWidth), gridHeight_(gridHeight) {}

    // Gets the next piece; false at the end of the text or the grid, and when a grid without columns leads nowhere.
    bool Next(TextPiece* piece);

private:
    uint32_t PrintableLength() const;
    void SkipControlBytes();

    const uint8_t* next_;
    uint32_t left_;
    uint32_t gridWidth_, gridHeight_;
    uint32_t line_ = 0;
    bool started_ = false;
};
