#include "imaging/text_pieces.h"

#include <gtest/gtest.h>

#include <string>

namespace {

// "line:text" of every piece, with bars between them.
std::string PiecesOf(const std::string& text, uint16_t gridWidth, uint16_t gridHeight) {
    TextPieces pieces(reinterpret_cast<const uint8_t*>(text.data()), static_cast<uint32_t>(text.size()), gridWidth,
                      gridHeight);
    std::string all;
    TextPiece piece;
    while (pieces.Next(&piece)) {
        if (!all.empty()) all += '|';
        all += std::to_string(piece.line) + ":";
        all.append(reinterpret_cast<const char*>(piece.text), piece.length);
    }
    return all;
}

}  // namespace

TEST(TextPieces, EndAtTheGridAndAtControlBytes) {
    const std::tuple<const char*, uint16_t, uint16_t, const char*> kCases[] = {
        {"", 10, 5, ""},
        {"hello world", 5, 1, "0:hello|0: worl|0:d"},  // kQuirkLongLineOverwritesItself
        {"one\r\ntwo", 10, 5, "0:one|1:two"},
        {"one\ntwo", 10, 5, "0:one|0:two"},  // a line feed alone starts no line
        {"one\r\r\n\rtwo", 10, 5, "0:one|3:two"},
        {"one\rtwo\rthree", 10, 2, "0:one|1:two"},
        {"one\r\r\rtwo", 10, 3, "0:one"},
        {"abcdef\rg", 3, 5, "0:abc|0:def|1:g"},
        {"\x1F\x80\xFF", 10, 5, "0:|0:\x80\xFF"},  // bytes above 127 are text
        {"abc", 2, 0, "0:ab"},                     // a grid without lines still gets one piece
        {"abc", 0, 5, ""},                         // a grid without columns leads nowhere
    };
    for (const auto& [text, width, height, pieces] : kCases) EXPECT_EQ(PiecesOf(text, width, height), pieces) << text;
}
