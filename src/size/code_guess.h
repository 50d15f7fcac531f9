// What the codes of an image come to, without encoding it.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <numeric>
#include <vector>

// Borders in each column of up to so many rows, which a byte can count.
constexpr size_t kRowsCounted = 255;

// Counts the borders in a row, and those that the row above has, too: `count` of them, before each pixel behind the
// first of both rows. A column a counter, all of the pixels' own type: many are compared at once.
template <typename Index>
void CountBorders(const Index* __restrict row, const Index* __restrict above, size_t count, Index* __restrict borders,
                  Index* __restrict repeated) {
    for (size_t x = 0; x < count; ++x) {
        const Index isBorder = row[x + 1] != row[x];
        const Index isSame = row[x + 1] == above[x + 1];
        const Index wasSame = row[x] == above[x];
        borders[x] = static_cast<Index>(borders[x] + isBorder);
        repeated[x] = static_cast<Index>(repeated[x] + (isBorder & isSame & wasSame));
    }
}

// About how many bits they take: each border between two colours in a row costs, less so where the row above has it,
// too. `fill(y, row)` puts the `width` indices of a row at `row`. May throw std::bad_alloc.
template <typename Index, typename Fill>
uint64_t GuessCodeBits(size_t width, size_t height, const Fill& fill) {
    constexpr uint64_t kBitsOfBorder = 9, kBitsOfRepeatedBorder = 4, kPixelsPerBit = 24;
    std::vector<Index> above(width), row(width), inColumn(width), again(width);
    uint64_t borders = 0, repeated = 0;
    const auto sum = [](std::vector<Index>* counts) {
        const uint64_t all = std::accumulate(counts->begin(), counts->end(), uint64_t{0});
        std::ranges::fill(*counts, Index{0});
        return all;
    };
    for (size_t y = 0; y < height; ++y) {
        fill(y, row.data());
        if (y == 0) std::ranges::fill(above, row[0]);
        if (width) CountBorders(row.data(), above.data(), width - 1, inColumn.data(), again.data());
        row.swap(above);
        if (y % kRowsCounted != kRowsCounted - 1 && y != height - 1) continue;
        borders += sum(&inColumn);
        repeated += sum(&again);
    }
    return kBitsOfBorder * (borders - repeated) + kBitsOfRepeatedBorder * repeated + width * height / kPixelsPerBit;
}
