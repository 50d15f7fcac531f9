// What the codes of an image come to, without encoding it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

// About how many bits they take: each border between two colours in a row costs, less so where the row above has it,
// too. `fill(y, row)` puts the `width` indices of a row at `row`. May throw std::bad_alloc.
template <typename Index, typename Fill>
uint64_t GuessCodeBits(size_t width, size_t height, const Fill& fill) {
    constexpr uint64_t kBitsOfBorder = 9, kBitsOfRepeatedBorder = 4, kPixelsPerBit = 24;
    std::vector<Index> above(width + 1), row(width + 1);
    uint64_t borders = 0, repeated = 0;
    for (size_t y = 0; y < height; ++y) {
        fill(y, row.data() + 1);
        row[0] = above[0] = row[1];
        uint32_t inRow = 0, again = 0;
        for (size_t x = 1; x <= width; ++x) {
            const auto isBorder = static_cast<unsigned>(row[x] != row[x - 1]);
            inRow += isBorder;
            again += isBorder & static_cast<unsigned>(row[x] == above[x]) &
                     static_cast<unsigned>(row[x - 1] == above[x - 1]);
        }
        borders += inRow;
        repeated += again;
        row.swap(above);
    }
    return kBitsOfBorder * (borders - repeated) + kBitsOfRepeatedBorder * repeated + width * height / kPixelsPerBit;
}
