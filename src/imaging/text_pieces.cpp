#include "imaging/text_pieces.h"

#include <algorithm>

namespace {

constexpr uint8_t kFirstPrintable = 32;
constexpr uint8_t kCarriageReturn = 13;

// What of a line does not fit into the grid is drawn again from the start of the line.
constexpr bool kQuirkLongLineOverwritesItself = true;

}  // namespace

bool TextPieces::Next(TextPiece* piece) {
    if (left_ == 0 || (started_ && line_ >= gridHeight_)) return false;
    started_ = true;
    uint32_t before = left_;
    uint32_t length = PrintableLength();
    *piece = {next_, length, line_};
    next_ += length;
    left_ -= length;
    if (!kQuirkLongLineOverwritesItself && length == gridWidth_) ++line_;
    SkipControlBytes();
    return left_ < before;
}

uint32_t TextPieces::PrintableLength() const {
    uint32_t most = std::min(gridWidth_, left_);
    uint32_t length = 0;
    while (length < most && next_[length] >= kFirstPrintable) ++length;
    return length;
}

void TextPieces::SkipControlBytes() {
    for (; left_ > 0 && *next_ < kFirstPrintable; ++next_, --left_)
        if (*next_ == kCarriageReturn) ++line_;
}
