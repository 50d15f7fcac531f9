#include "tests/support/gif_bytes.h"

#include <algorithm>

GifBytes& GifBytes::Add(std::initializer_list<int> bytes) {
    for (int byte : bytes) push_back(static_cast<uint8_t>(byte));
    return *this;
}

GifBytes& GifBytes::Add(const Bytes& bytes) {
    insert(end(), bytes.begin(), bytes.end());
    return *this;
}

GifBytes& GifBytes::Text(std::string_view text) {
    insert(end(), text.begin(), text.end());
    return *this;
}

GifBytes& GifBytes::Word(int value) {
    return Add({value & 255, value >> 8});
}

GifBytes& GifBytes::Repeat(int byte, size_t times) {
    insert(end(), times, static_cast<uint8_t>(byte));
    return *this;
}

GifBytes& GifBytes::Palette(int packed) {
    if (packed & 0x80)
        for (int i = 0; i < 2 << (packed & 7); ++i) Add({i, 2 * i, 3 * i});
    return *this;
}

GifBytes& GifBytes::Header(std::string_view signature, int width, int height, int packed) {
    return Text(signature).Word(width).Word(height).Add({packed, 0, 0}).Palette(packed);
}

GifBytes& GifBytes::ImageHead(int width, int height, int packed) {
    return Add({0x2C, 0, 0, 0, 0}).Word(width).Word(height).Add({packed}).Palette(packed);
}

GifBytes& GifBytes::SmallImage(int packed) {
    ImageHead(2, 2, packed);
    CodeBits codes;
    for (unsigned code : {4u, 1u, 2u, 3u}) codes.Put(code, 3);
    codes.Put(0, 4);  // two entries have filled the codes of three bits
    codes.Put(5, 4);
    Add({2, static_cast<int>(codes.Packed().size())});
    return Add(codes.Packed()).Add({0});
}

GifBytes& GifBytes::Extension(int label, std::string_view fixedPart, std::string_view text) {
    return Add({0x21, label}).Text(fixedPart).SubBlocks(text);
}

GifBytes& GifBytes::Control(int delay, int packed, int transparent) {
    return Add({0x21, 0xF9, 4, packed}).Word(delay).Add({transparent, 0});
}

GifBytes& GifBytes::Loop(int count) {
    return Add({0x21, 0xFF, 11}).Text("NETSCAPE2.0").Add({3, 1}).Word(count).Add({0});
}

GifBytes& GifBytes::SubBlocks(std::string_view text, size_t longest) {
    for (; !text.empty(); text.remove_prefix(std::min(longest, text.size())))
        Add({static_cast<int>(std::min(longest, text.size()))}).Text(text.substr(0, longest));
    return Add({0});
}

GifBytes Start(int packed, std::string_view signature) {
    return GifBytes().Header(signature, 5, 4, packed);
}

void CodeBits::Put(unsigned code, unsigned width) {
    for (unsigned bit = 0; bit < width; ++bit, ++used_) {
        if (used_ % 8 == 0) bytes_.push_back(0);
        if (code >> bit & 1) bytes_.back() = static_cast<uint8_t>(bytes_.back() | 1u << used_ % 8);
    }
}
