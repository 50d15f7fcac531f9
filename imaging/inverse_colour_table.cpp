#include "imaging/inverse_colour_table.h"

#include <cstdlib>
#include <cstring>

#include "imaging/colour_index.h"
#include "imaging/user_abort.h"

namespace {

constexpr int kCellsPerChannel = 32;
constexpr int kCellStep = 8;  // between the colours of neighbouring cells

// Palette entries that may still be the nearest somewhere, in increasing index order.
struct Candidates {
    int count = 0;
    RgbTriple colours[kPaletteEntries];
    uint8_t indexes[kPaletteEntries];

    void Add(RgbTriple colour, uint8_t index) {
        colours[count] = colour;
        indexes[count++] = index;
    }
};

struct Point {
    int red, green, blue;
};

int Distance(Point at, RgbTriple colour) {
    int dr = at.red - colour.red, dg = at.green - colour.green, db = at.blue - colour.blue;
    return dr * dr + dg * dg + db * db;
}

int Spread(RgbTriple a, RgbTriple b) {
    return abs(a.red - b.red) + abs(a.green - b.green) + abs(a.blue - b.blue);
}

int NearestCandidate(Point at, const Candidates& candidates) {
    int best = 0;
    int bestDistance = Distance(at, candidates.colours[0]);
    for (int i = 1; i < candidates.count; ++i) {
        int distance = Distance(at, candidates.colours[i]);
        if (distance < bestDistance) {
            bestDistance = distance;
            best = i;
        }
    }
    return best;
}

// Of a cube of cells, keeps the candidates that beat the one nearest to its centre somewhere in the cube.
// How much further one colour is than another changes linearly with the place, so that over the cube, `reach` from the
// centre in each channel, it falls below the value at the centre by at most 2 * reach * their spread.
void Prune(Point centre, int reach, const Candidates& candidates, Candidates* kept) {
    int rival = NearestCandidate(centre, candidates);
    RgbTriple rivalColour = candidates.colours[rival];
    int rivalDistance = Distance(centre, rivalColour);
    for (int i = 0; i < candidates.count; ++i) {
        int lag = Distance(centre, candidates.colours[i]) - rivalDistance;
        int gain = 2 * reach * Spread(candidates.colours[i], rivalColour);
        if (lag < gain || (lag == gain && i <= rival)) kept->Add(candidates.colours[i], candidates.indexes[i]);
    }
}

// Fills the cube of `size` cells a side whose first cell has the coordinates `corner`.
void FillCube(Point corner, int size, const Candidates& candidates, uint8_t* table) {
    int reach = (size - 1) * kCellStep / 2;
    Point centre = {corner.red * kCellStep + reach, corner.green * kCellStep + reach, corner.blue * kCellStep + reach};
    uint8_t* cells = table + corner.red + corner.green * 32 + corner.blue * 1024;
    if (size == 1) {
        *cells = candidates.indexes[NearestCandidate(centre, candidates)];
        return;
    }
    Candidates kept;
    Prune(centre, reach, candidates, &kept);
    if (kept.count == 1) {
        for (int blue = 0; blue < size; ++blue)
            for (int green = 0; green < size; ++green)
                memset(cells + green * 32 + blue * 1024, kept.indexes[0], static_cast<size_t>(size));
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
    for (int i = 0; i < kPaletteEntries; ++i)
        if (seen.Add(PackColour(palette[i].red, palette[i].green, palette[i].blue), i))
            distinct.Add(palette[i], static_cast<uint8_t>(i));
    FillCube({0, 0, 0}, kCellsPerChannel, distinct, cells);
}

bool InverseColourTable::Build(const RgbTriple* palette, unsigned flags) {
    for (uint32_t cell = 0; cell < kColourCells; ++cell)
        if (StopRequested(flags)) return false;
    Fill(palette);
    return true;
}
