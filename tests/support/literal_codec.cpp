#include "tests/support/literal_codec.h"

#include <algorithm>
#include <map>

#include "gif/descriptor.h"
#include "tests/support/gif_bytes.h"

namespace {

// Row numbers in the order of the data. The first row of an interlaced pass is not tested against the height.
std::vector<int> RowOrder(int height, bool interlaced) {
    std::vector<int> rows;
    for (int row = 0; row < height && !interlaced; ++row) rows.push_back(row);
    for (auto [first, step] : {std::pair{0, 8}, {4, 8}, {2, 4}, {1, 2}})
        for (int row = first; interlaced && (row == first || row < height); row += step) rows.push_back(row);
    return rows;
}

// The whole sub-blocks of a chain as bits.
std::vector<bool> BitsOf(const Bytes& chain) {
    std::vector<bool> bits;
    for (size_t at = 0; at < chain.size() && chain[at] > 0 && at + chain[at] < chain.size(); at += 1u + chain[at])
        for (size_t bit = 0; bit < 8u * chain[at]; ++bit) bits.push_back(chain[at + 1 + bit / 8] >> bit % 8 & 1);
    return bits;
}

// Every code has its string. False when a code can't occur.
bool DecodePixels(const std::vector<bool>& bits, int codeSize, Bytes* pixels) {
    const unsigned clearCode = 1u << codeSize;
    std::vector<Bytes> strings;
    Bytes previous;
    unsigned width = 0;
    auto restart = [&] {
        strings.assign(clearCode + 2, {});
        for (unsigned pixel = 0; pixel < clearCode; ++pixel) strings[pixel] = {static_cast<uint8_t>(pixel)};
        previous.clear();
        width = static_cast<unsigned>(codeSize) + 1;
    };
    restart();
    for (size_t at = 0; at + width <= bits.size();) {
        unsigned code = 0;
        for (unsigned bit = 0; bit < width; ++bit) code |= unsigned{bits[at++]} << bit;
        if (code == clearCode + 1) break;
        if (code > strings.size() || (code == strings.size() && previous.empty())) return false;
        if (code == clearCode) {
            restart();
            continue;
        }
        if (!previous.empty() && strings.size() < 4096) {
            uint8_t following = code < strings.size() ? strings[code][0] : previous[0];
            strings.push_back(previous);
            strings.back().push_back(following);
            if (strings.size() >= 1u << width && width < 12) ++width;
        }
        previous = strings[code];
        pixels->insert(pixels->end(), previous.begin(), previous.end());
    }
    return true;
}

Bytes EncodePixels(const Bytes& pixels, unsigned codeSize) {
    const unsigned clearCode = 1u << codeSize;
    std::map<std::pair<unsigned, unsigned>, unsigned> codes;
    unsigned width = codeSize + 1, next = clearCode + 2;
    CodeBits data;
    std::vector<size_t> ends = {0};  // of the sub-blocks, one of which ends where a code finds 251 whole bytes in it
    auto put = [&](unsigned code) {
        if (data.Count() / 8 - ends.back() >= 251) ends.push_back(data.Count() / 8);
        data.Put(code, width);
    };
    put(clearCode);
    unsigned prefix = pixels.empty() ? 0 : pixels[0];
    for (size_t i = 1; i < pixels.size(); ++i) {
        unsigned pixel = pixels[i];
        if (auto known = codes.find({prefix, pixel}); known != codes.end()) {
            prefix = known->second;
            continue;
        }
        put(prefix);
        if (next < 4096) codes[{prefix, pixel}] = next;
        prefix = pixel;
        if (next++ < 1u << width) continue;
        if (width < 12) {
            ++width;
            continue;
        }
        put(clearCode);
        codes.clear();
        width = codeSize + 1, next = clearCode + 2;
    }
    if (!pixels.empty()) put(prefix);
    put(clearCode + 1);
    ends.push_back(data.Packed().size());
    GifBytes out;
    out.Add({static_cast<int>(codeSize)});
    for (size_t i = 1; i < ends.size(); ++i) {
        out.Add({static_cast<int>(ends[i] - ends[i - 1])});
        out.insert(out.end(), &data.Packed()[ends[i - 1]], &data.Packed()[0] + ends[i]);
    }
    return std::move(out.Add({0}));
}

}  // namespace

DecodeResult DecodeLiterally(const Bytes& chain, int codeSize, Block* image) {
    if (codeSize < 2 || codeSize > 8) return kDecodeBadCodeSize;
    Bytes pixels;
    bool intact = DecodePixels(BitsOf(chain), codeSize, &pixels);
    ImageWriteLock bitmap(&image->data);
    bool interlaced = (GetImageFields(*image).packed & kImageInterlaced) != 0;
    std::vector<int> rows = RowOrder(bitmap->height, interlaced);
    auto width = static_cast<size_t>(bitmap->width);
    for (size_t i = 0; width > 0 && i < pixels.size() / width * width; ++i) {
        // What is too much goes into row 0 of an interlaced image, and nowhere in another.
        int row = i / width < rows.size() ? rows[i / width] : interlaced ? 0 : bitmap->height;
        unsigned value = bitmap->bitCount == 1 ? pixels[i] > 0 : pixels[i];
        SetImagePixel(bitmap, static_cast<int>(i % width), row, value);
    }
    return intact ? kDecodeDone : kDecodeCorrupt;
}

Bytes EncodeLiterally(const Block& image) {
    ImageLock bitmap(image.data);
    ImageFields fields = GetImageFields(image);
    int depth = DepthOfPacked(fields.packed);
    std::vector<int> rows = RowOrder(bitmap->height, (fields.packed & kImageInterlaced) != 0);
    rows.resize(static_cast<size_t>(bitmap->height));  // the passes may name one row more
    Bytes pixels;
    for (int row : rows)
        for (int x = 0; x < bitmap->width; ++x) {
            uint32_t value = GetImagePixel(bitmap, x, row);
            pixels.push_back(static_cast<uint8_t>(value == kNoPixel ? 0 : value & ((1u << depth) - 1)));
        }
    return EncodePixels(pixels, static_cast<unsigned>(std::max(depth, 2)));
}
