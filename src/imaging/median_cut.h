// Cutting a histogram of colours into boxes, each of which becomes one colour of a palette.
#pragma once

#include "imaging/image_bitmap.h"

constexpr int kHistogramCells = 32768;
constexpr int kNoCell = -1;

// All pixels whose channels agree in their upper 5 bits.
struct ColourCell {
    uint8_t red, green, blue;  // these 5 bits: 0 to 31
    uint32_t box;              // the palette entry that the cell went into
    uint32_t count;            // its pixels
    int32_t next;              // the next cell of its box, or kNoCell
};

constexpr uint32_t HistogramCell(uint32_t red, uint32_t green, uint32_t blue) {
    return (red & 248) << 7 | (green & 248) << 2 | blue >> 3;
}

// A set of cells. Where it begins and how far it reaches in each channel (red, green, blue) decides on the next cut.
struct ColourBox {
    uint8_t minimum[3], extent[3];
    uint32_t cells;
    int64_t pixels;  // may fall below zero, see MedianCut
    int32_t first;   // its first cell, or kNoCell
};

// The memory of one cut.
struct ColourHistogram {
    ColourCell cells[kHistogramCells] = {};
    ColourBox boxes[kPaletteEntries] = {};
    int32_t order[kHistogramCells] = {};  // cells while they are sorted
};

// Gives every cell its channels.
void NumberCells(ColourHistogram* histogram);

// Cuts the cells that have pixels, at least one, `pixels` in all, into at most `wanted` (1 to 256) boxes and puts their
// mean colours into `palette`. The mean is that of the cells: how many pixels each has only decides where to cut.
// When the cells do not suffice, white is added. Returns the number of colours.
int MedianCut(ColourHistogram* histogram, int64_t pixels, int wanted, RgbTriple* palette);
