#include <algorithm>
#include <cstring>
#include <utility>

#include "tests/support/literal_colours.h"

namespace {

struct Box {
    int minimum[3] = {}, extent[3] = {};
    long long total = 0;
    std::vector<int> cells;  // in their order
};

int Channel(int cell, int channel) {
    return cell >> (10 - 5 * channel) & 31;
}

void Sort(std::vector<int>& cells, int first, int last, int channel) {
    auto at = [&](int i) -> int& { return cells[static_cast<size_t>(i)]; };
    auto key = [&](int i) { return Channel(at(i), channel); };
    if (last - first + 1 < 8) {
        for (int i = first + 1; i <= last; ++i)
            for (int k = i; k > first && key(k - 1) > key(k); --k) std::swap(at(k), at(k - 1));
        return;
    }
    int i = first, j = last, pivot = key((first + last) / 2);
    while (i <= j) {
        while (key(i) < pivot) ++i;
        while (key(j) > pivot) --j;
        if (i <= j) std::swap(at(i++), at(j--));
    }
    Sort(cells, first, j, channel);
    Sort(cells, i, last, channel);
}

Box Split(Box& box, int channel, const std::vector<long long>& counts) {
    Sort(box.cells, 0, static_cast<int>(box.cells.size()) - 1, channel);
    auto count = [&](size_t i) { return counts[static_cast<size_t>(box.cells[i])]; };
    long long half = box.total / 2, kept = count(0);
    size_t k = 1;
    while (k + 1 < box.cells.size() && half - kept - count(k) >= 0) kept += count(k++);
    Box made = box;
    made.cells.assign(box.cells.begin() + static_cast<long>(k), box.cells.end());
    made.total = kept;
    box.cells.resize(k);
    box.total -= kept;
    int start = box.minimum[channel];
    made.minimum[channel] = Channel(made.cells.front(), channel) * 8;
    made.extent[channel] = (start + box.extent[channel] - made.minimum[channel]) & 255;
    box.extent[channel] = (Channel(box.cells.back(), channel) * 8 - start) & 255;
    return made;
}

std::vector<Box> CutBoxes(int wanted, const std::vector<long long>& counts, long long total) {
    std::vector<Box> boxes(1);
    for (int& extent : boxes[0].extent) extent = wanted & 255;
    boxes[0].total = total;
    for (int i = 0; i < 32768; ++i)
        if (counts[static_cast<size_t>(i)] >= 1) boxes[0].cells.push_back(i);
    while (static_cast<int>(boxes.size()) < wanted) {
        int best = -1, channel = 0;
        size_t chosen = 0;
        for (size_t i = 0; i < boxes.size(); ++i)
            for (int c = 0; c < 3; ++c)
                if (boxes[i].cells.size() >= 2 && boxes[i].extent[c] > best) {
                    best = boxes[i].extent[c];
                    chosen = i;
                    channel = c;
                }
        if (best < 0) break;
        Box made = Split(boxes[chosen], channel, counts);
        boxes.push_back(std::move(made));
    }
    return boxes;
}

}  // namespace

int LiteralSharedPalette(int wanted, RgbTriple* palette, const std::vector<MemoryHandle>& images) {
    memset(palette, 0, kPaletteBytes);
    std::vector<long long> counts(32768);
    std::vector<RgbTriple> exact;
    bool overflow = false;
    long long total = 0;
    for (MemoryHandle image : images) {
        MemoryLock lock(image);
        auto* bitmap = lock.As<const BitmapHeader>();
        total += static_cast<long long>(bitmap->width) * bitmap->height;
        for (int y = bitmap->height - 1; y >= 0; --y)
            for (int x = 0; x < bitmap->width; ++x) {
                uint32_t value = GetImagePixel(bitmap, x, y);
                RgbTriple colour = {static_cast<uint8_t>(value), static_cast<uint8_t>(value >> 8),
                                    static_cast<uint8_t>(value >> 16)};
                ++counts[static_cast<size_t>((colour.red & 248) * 128 + (colour.green & 248) * 4 + colour.blue / 8)];
                if (overflow || std::find(exact.begin(), exact.end(), colour) != exact.end()) continue;
                if (static_cast<int>(exact.size()) == wanted)
                    overflow = true;
                else
                    exact.push_back(colour);
            }
    }
    if (!overflow) {
        std::copy(exact.begin(), exact.end(), palette);
        return static_cast<int>(exact.size());
    }
    int made = 0;
    for (const Box& box : CutBoxes(wanted, counts, total)) {
        int sums[3] = {};
        for (int cell : box.cells)
            for (int c = 0; c < 3; ++c) sums[c] += Channel(cell, c) * 8;
        auto mean = [&](int c) { return static_cast<uint8_t>(sums[c] / static_cast<int>(box.cells.size())); };
        palette[made++] = {mean(0), mean(1), mean(2)};
    }
    if (made < wanted) palette[made++] = {255, 255, 255};
    return made;
}
