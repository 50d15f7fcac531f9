// GIF files built byte by byte.
#pragma once

#include <initializer_list>
#include <string_view>

#include "tests/support/temp_folder.h"

// Bytes with the pieces of a GIF file to add to them. Each call returns the object itself, so that they chain.
class GifBytes : public Bytes {
public:
    GifBytes& Add(std::initializer_list<int> bytes);
    GifBytes& Add(const Bytes& bytes);
    GifBytes& Text(std::string_view text);
    GifBytes& Word(int value);
    GifBytes& Repeat(int byte, size_t times);

    // The 13 bytes, and the palette that `packed` asks for: colour i is (i, 2i, 3i).
    GifBytes& Header(std::string_view signature, int width, int height, int packed);
    // Introducer and descriptor at (0, 0), and a palette as above.
    GifBytes& ImageHead(int width, int height, int packed);
    // A 2 x 2 image of the pixels 1 2 / 3 0 with its data.
    GifBytes& SmallImage(int packed = 0);
    // Introducer, label and text as sub-blocks.
    GifBytes& Extension(int label, std::string_view fixedPart, std::string_view text);
    GifBytes& Control(int delay, int packed = 0, int transparent = 0);
    GifBytes& Loop(int count);
    GifBytes& Comment(std::string_view text) { return Extension(0xFE, "", text); }
    // The text in sub-blocks of at most `longest` bytes, and the terminator.
    GifBytes& SubBlocks(std::string_view text, size_t longest = 255);

private:
    GifBytes& Palette(int packed);
};

constexpr int kFourColours = 0x81;  // packed byte

// The beginning of a file: a screen of 5 x 4 pixels.
GifBytes Start(int packed = kFourColours, std::string_view signature = "GIF89a");

// Codes of any width as bits, least significant first.
class CodeBits {
public:
    void Put(unsigned code, unsigned width);
    const Bytes& Packed() const { return bytes_; }
    size_t Count() const { return used_; }

private:
    Bytes bytes_;
    size_t used_ = 0;  // bits of all bytes
};
