#include <algorithm>

#include "tests/support/literal_colours.h"

namespace {

struct Box {
    int minimum[3] = {}, extent[3] = {};
    long long total = 0;
    std::vector<int> cells;  // in their order
};

// Cells and their pixels: 5 bits of red, green and blue.
using Counts = std::vector<long long>;

int Channel(int cell, int channel) {
    return cell >> (10 - 5 * channel) & 31;
}

void Sort(int* cells, int first, int last, int channel) {
    auto key = [&](int i) { return Channel(cells[i], channel); };
    if (last - first + 1 < 8) {
        for (int i = first + 1; i <= last; ++i)
            for (int k = i; k > first && key(k - 1) > key(k); --k) std::swap(cells[k], cells[k - 1]);
        return;
    }
    int i = first, j = last;
    const int pivot = key((first + last) / 2);
    while (i <= j) {
        while (key(i) < pivot) ++i;
        while (key(j) > pivot) --j;
        if (i <= j) std::swap(cells[i++], cells[j--]);
    }
    Sort(cells, first, j, channel);
    Sort(cells, i, last, channel);
}

Box Split(Box& box, int channel, const Counts& counts) {
    Sort(box.cells.data(), 0, static_cast<int>(box.cells.size()) - 1, channel);
    auto count = [&](size_t i) { return counts[static_cast<size_t>(box.cells[i])]; };
    long long half = box.total / 2, kept = count(0);
    size_t k = 1;
    while (k + 1 < box.cells.size() && half - kept - count(k) >= 0) kept += count(k++);
    Box made = box;
    made.cells.erase(made.cells.begin(), made.cells.begin() + static_cast<long>(k));
    made.total = kept;
    box.cells.resize(k);
    box.total -= kept;
    const int start = box.minimum[channel];
    made.minimum[channel] = Channel(made.cells.front(), channel) * 8;
    made.extent[channel] = (start + box.extent[channel] - made.minimum[channel]) & 255;
    box.extent[channel] = (Channel(box.cells.back(), channel) * 8 - start) & 255;
    return made;
}

int MedianCut(int wanted, RgbTriple* palette, const Counts& counts, long long total) {
    std::vector<Box> boxes(1);
    std::fill_n(boxes[0].extent, 3, wanted & 255);
    boxes[0].total = total;
    for (int i = 0; i < 32768; ++i)
        if (counts[static_cast<size_t>(i)] >= 1) boxes[0].cells.push_back(i);
    while (static_cast<int>(boxes.size()) < wanted) {
        int best = -1, channel = 0;
        Box* chosen = nullptr;
        for (Box& box : boxes)
            for (int c = 0; c < 3; ++c)
                if (box.cells.size() >= 2 && box.extent[c] > best) {
                    best = box.extent[c];
                    chosen = &box;
                    channel = c;
                }
        if (!chosen) break;
        Box made = Split(*chosen, channel, counts);
        boxes.push_back(made);
    }
    int made = 0;
    for (const Box& box : boxes) {
        auto mean = [&](int c) {
            size_t sum = 0;
            for (int cell : box.cells) sum += static_cast<size_t>(Channel(cell, c) * 8);
            return static_cast<uint8_t>(sum / box.cells.size());
        };
        palette[made++] = {mean(0), mean(1), mean(2)};
    }
    if (made < wanted) palette[made++] = {255, 255, 255};
    return made;
}

}  // namespace

int LiteralSharedPalette(int wanted, RgbTriple* palette, const std::vector<MemoryHandle>& images) {
    Counts counts(32768);
    std::vector<RgbTriple> exact;  // and one more than wanted, once there are too many
    long long total = 0;
    for (const MemoryHandle& image : images) {
        ImageLock bitmap(image);
        total += static_cast<long long>(bitmap->width) * bitmap->height;
        for (int y = bitmap->height - 1; y >= 0; --y)
            for (int x = 0; x < bitmap->width; ++x) {
                uint32_t value = GetImagePixel(bitmap, x, y);
                RgbTriple colour = {static_cast<uint8_t>(value), static_cast<uint8_t>(value >> 8),
                                    static_cast<uint8_t>(value >> 16)};
                ++counts[static_cast<size_t>((colour.red & 248) * 128 + (colour.green & 248) * 4 + colour.blue / 8)];
                if (static_cast<int>(exact.size()) > wanted) continue;
                if (std::find(exact.begin(), exact.end(), colour) == exact.end()) exact.push_back(colour);
            }
    }
    std::fill_n(palette, kPaletteEntries, RgbTriple{});
    if (static_cast<int>(exact.size()) > wanted) return MedianCut(wanted, palette, counts, total);
    std::copy(exact.begin(), exact.end(), palette);
    return static_cast<int>(exact.size());
}
