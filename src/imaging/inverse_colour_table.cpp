#include "imaging/inverse_colour_table.h"

#include <algorithm>
#include <cstdlib>

#include "imaging/colour_index.h"

namespace {

constexpr int kCellsPerChannel = 32;
constexpr int kCellStep = 8;  // between the colours of neighbouring cells
constexpr int kLeafSize = 4;

struct Candidate {
    uint8_t red, green, blue, index;
};

// Palette entries that may still be the nearest somewhere, in increasing index order.
struct Candidates {
    int count = 0;
    Candidate entries[kPaletteEntries];
};

struct Point {
    int red, green, blue;
};

int Distance(Point at, Candidate colour) {
    int dr = at.red - colour.red, dg = at.green - colour.green, db = at.blue - colour.blue;
    return dr * dr + dg * dg + db * db;
}

int Spread(Candidate a, Candidate b) {
    return abs(a.red - b.red) + abs(a.green - b.green) + abs(a.blue - b.blue);
}

// Of a cube of cells, keeps the candidates that beat the one nearest to its centre somewhere in the cube.
// How much further one colour is than another changes linearly with the place, so that over the cube, `reach` from the
// centre in each channel, it falls below the value at the centre by at most 2 * reach * their spread.
// cppcheck-suppress passedByValue ; three numbers, read in the innermost loop
void Prune(Point centre, int reach, const Candidates& candidates, Candidates* kept) {
    int distances[kPaletteEntries];
    int rival = 0;
    for (int i = 0; i < candidates.count; ++i) {
        distances[i] = Distance(centre, candidates.entries[i]);
        if (distances[i] < distances[rival]) rival = i;
    }
    Candidate best = candidates.entries[rival];
    for (int i = 0; i < candidates.count; ++i) {
        int lag = distances[i] - distances[rival];
        int gain = 2 * reach * Spread(candidates.entries[i], best);
        if (lag < gain || (lag == gain && i <= rival)) kept->entries[kept->count++] = candidates.entries[i];
    }
}

// Fills the kLeafSize cells a side from `corner` on. What is least for the nearest candidate, the first of equals, is
//     (|candidate|^2 - 2 * candidate * cell) * 256 + index
// as the square of the cell's own colour is common to all. From cell to cell it changes by a constant.
void FillLeaf(Point corner, const Candidates& candidates, uint8_t* cells) {
    constexpr int kPlane = kLeafSize * kLeafSize;
    constexpr int kScale = 256, kStepScale = 2 * kCellStep * kScale;
    int32_t best[kLeafSize][kPlane];
    std::fill_n(&best[0][0], kLeafSize * kPlane, INT32_MAX);
    for (int i = 0; i < candidates.count; ++i) {
        Candidate colour = candidates.entries[i];
        int red = colour.red * kStepScale, green = colour.green * kStepScale, blue = colour.blue * kStepScale;
        int32_t plane[kPlane];  // keys of the cells with the least blue
        int key = Distance({0, 0, 0}, colour) * kScale + colour.index - corner.red * red - corner.green * green -
                  corner.blue * blue;
        for (int k = 0; k < kPlane; ++k) plane[k] = key - k % kLeafSize * red - k / kLeafSize * green;
        for (int z = 0; z < kLeafSize; ++z)
            for (int k = 0; k < kPlane; ++k) best[z][k] = std::min(best[z][k], plane[k] - z * blue);
    }
    for (int z = 0; z < kLeafSize; ++z)
        for (int k = 0; k < kPlane; ++k)
            cells[k % kLeafSize + k / kLeafSize * 32 + z * 1024] = static_cast<uint8_t>(best[z][k] & (kScale - 1));
}

// Fills the cube of `size` cells a side whose first cell has the coordinates `corner`.
void FillCube(Point corner, int size, const Candidates& candidates, uint8_t* table) {
    int reach = (size - 1) * kCellStep / 2;
    Point centre = {corner.red * kCellStep + reach, corner.green * kCellStep + reach, corner.blue * kCellStep + reach};
    Candidates kept;
    Prune(centre, reach, candidates, &kept);
    if (size == kLeafSize) {
        FillLeaf(corner, kept, &table[corner.red + corner.green * 32 + corner.blue * 1024]);
        return;
    }
    int half = size / 2;
    for (int part = 0; part < 8; ++part) {
        Point partCorner = {corner.red + (part & 1) * half, corner.green + (part >> 1 & 1) * half,
                            corner.blue + (part >> 2) * half};
        FillCube(partCorner, half, kept, table);
    }
}

}  // namespace

void InverseColourTable::Fill(const RgbTriple* palette) {
    Candidates distinct;  // an entry that repeats an earlier one is never chosen
    ColourIndex seen;
    for (int i = 0; i < kQuirkSearchedEntries; ++i)
        if (seen.Add(PackColour(palette[i].red, palette[i].green, palette[i].blue), i))
            distinct.entries[distinct.count++] = {palette[i].red, palette[i].green, palette[i].blue,
                                                  static_cast<uint8_t>(i)};
    FillCube({0, 0, 0}, kCellsPerChannel, distinct, cells);
}

bool InverseColourTable::Build(const RgbTriple* palette, StopQuestion* stop) {
    for (uint32_t cell = 0; cell < kColourCells; ++cell)
        if (StopRequested(stop)) return false;
    Fill(palette);
    return true;
}
