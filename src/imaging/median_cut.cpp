#include "imaging/median_cut.h"

#include <utility>

namespace {

// How far its colours reach is not looked up for the first box: in every channel as far as there are colours wanted, of
// which 256 count as 0. So the first cut goes along red whatever the colours are. Every cut makes two extents true.
constexpr bool kQuirkFirstBoxReachesAsWanted = true;
constexpr int kFullReach = 31 * 8;

// When a box is cut in two, each half gets the pixel total of the other one, which can drive a total below zero.
constexpr bool kQuirkTotalsExchanged = true;

// Black was meant to follow where no grey is found, but the white that comes before it counts as one.
constexpr bool kQuirkBlackIsNeverAdded = true;

uint8_t ChannelOf(const ColourCell& cell, int channel) {
    return channel == 0 ? cell.red : channel == 1 ? cell.green : cell.blue;
}

// Sorts cells by one channel. Where cells of the same value end up decides what the next cut separates, so this very
// algorithm, and not just any sort, is part of how palettes come out: a quicksort around the value of the middle
// element (the lower one of two) that exchanges elements equal to it, and an insertion sort below 8 elements.
class CellSort {
public:
    CellSort(const ColourCell* cells, int channel) : cells_(cells), channel_(channel) {}

    // Sorts order[first] to order[last].
    void operator()(int32_t* order, int first, int last) const {
        while (last - first + 1 >= kInsertionBelow) {
            int left = first, right = last;
            Partition(order, &left, &right);
            // The shorter part by recursion, the longer one in the loop: the stack stays small whatever the data.
            if (right - first < last - left) {
                (*this)(order, first, right);
                first = left;
            } else {
                (*this)(order, left, last);
                last = right;
            }
        }
        Insert(order, first, last);
    }

private:
    static constexpr int kInsertionBelow = 8;

    int Key(int32_t cell) const { return ChannelOf(cells_[cell], channel_); }

    // Leaves the elements up to *right at or below the pivot, those from *left on at or above it.
    void Partition(int32_t* order, int* left, int* right) const {
        int pivot = Key(order[(*left + *right) / 2]);
        while (*left <= *right) {
            while (Key(order[*left]) < pivot) ++*left;
            while (Key(order[*right]) > pivot) --*right;
            if (*left <= *right) std::swap(order[(*left)++], order[(*right)--]);
        }
    }

    void Insert(int32_t* order, int first, int last) const {
        for (int i = first + 1; i <= last; ++i) {
            int32_t cell = order[i];
            int at = i;
            for (; at > first && Key(order[at - 1]) > Key(cell); --at) order[at] = order[at - 1];
            order[at] = cell;
        }
    }

    const ColourCell* cells_;
    int channel_;
};

void FillFirstBox(ColourHistogram* histogram, int64_t pixels, int wanted) {
    auto extent = static_cast<uint8_t>(kQuirkFirstBoxReachesAsWanted ? wanted & 255 : kFullReach);
    for (ColourBox& box : histogram->boxes) box = {{0, 0, 0}, {extent, extent, extent}, 0, 0, kNoCell};
    ColourBox& box = histogram->boxes[0];
    box.pixels = pixels;
    int32_t* link = &box.first;
    for (int32_t i = 0; i < kHistogramCells; ++i) {
        if (histogram->cells[i].count == 0) continue;
        *link = i;
        link = &histogram->cells[i].next;
        ++box.cells;
    }
    *link = kNoCell;
}

// The box of at least 2 cells and the channel that reach furthest, the first of equals. False when there is none.
bool ChooseCut(const ColourBox* boxes, int count, int* chosen, int* channel) {
    int furthest = -1;
    for (int i = 0; i < count; ++i) {
        for (int c = 0; c < 3 && boxes[i].cells >= 2; ++c) {
            if (boxes[i].extent[c] <= furthest) continue;
            furthest = boxes[i].extent[c];
            *chosen = i;
            *channel = c;
        }
    }
    return furthest >= 0;
}

void SortCells(ColourHistogram* histogram, ColourBox* box, int channel) {
    ColourCell* cells = histogram->cells;
    int32_t* order = histogram->order;
    int count = 0;
    for (int32_t cell = box->first; cell != kNoCell; cell = cells[cell].next) order[count++] = cell;
    CellSort{cells, channel}(order, 0, count - 1);
    int32_t* link = &box->first;
    for (int i = 0; i < count; ++i) {
        *link = order[i];
        link = &cells[order[i]].next;
    }
    *link = kNoCell;
}

// Moves the cells of the upper half, by pixels, of the sorted `box` into `made`; each box keeps at least one cell.
void Cut(ColourCell* cells, int channel, ColourBox* box, ColourBox* made) {
    int64_t half = box->pixels / 2;
    int32_t last = box->first;
    int64_t kept = cells[last].count;
    uint32_t keptCells = 1;
    for (int32_t next = cells[last].next; cells[next].next != kNoCell && half - kept - cells[next].count >= 0;
         next = cells[next].next) {
        last = next;
        kept += cells[next].count;
        ++keptCells;
    }

    *made = *box;
    made->first = cells[last].next;
    made->cells = box->cells - keptCells;
    cells[last].next = kNoCell;
    box->cells = keptCells;
    const int64_t gone = box->pixels - kept;
    box->pixels = kQuirkTotalsExchanged ? gone : kept;
    made->pixels = kQuirkTotalsExchanged ? kept : gone;

    int minimum = box->minimum[channel];
    int madeMinimum = ChannelOf(cells[made->first], channel) * 8;
    made->minimum[channel] = static_cast<uint8_t>(madeMinimum);
    made->extent[channel] = static_cast<uint8_t>(minimum + box->extent[channel] - madeMinimum);
    box->extent[channel] = static_cast<uint8_t>(ChannelOf(cells[last], channel) * 8 - minimum);
}

RgbTriple MeanColour(ColourCell* cells, const ColourBox& box, uint32_t number) {
    uint32_t red = 0, green = 0, blue = 0;
    for (int32_t i = box.first; i != kNoCell; i = cells[i].next) {
        red += cells[i].red * 8u;
        green += cells[i].green * 8u;
        blue += cells[i].blue * 8u;
        cells[i].box = number;
    }
    return {static_cast<uint8_t>(red / box.cells), static_cast<uint8_t>(green / box.cells),
            static_cast<uint8_t>(blue / box.cells)};
}

int AddWhiteAndBlack(RgbTriple* palette, int count, int wanted) {
    if (count < wanted) palette[count++] = {255, 255, 255};
    if (count < wanted && !kQuirkBlackIsNeverAdded) palette[count++] = {0, 0, 0};
    return count;
}

}  // namespace

void NumberCells(ColourHistogram* histogram) {
    for (int i = 0; i < kHistogramCells; ++i) {
        ColourCell& cell = histogram->cells[i];
        cell.red = static_cast<uint8_t>(i >> 10);
        cell.green = static_cast<uint8_t>(i >> 5 & 31);
        cell.blue = static_cast<uint8_t>(i & 31);
    }
}

int MedianCut(ColourHistogram* histogram, int64_t pixels, int wanted, RgbTriple* palette) {
    ColourBox* boxes = histogram->boxes;
    FillFirstBox(histogram, pixels, wanted);
    int count = 1;
    int chosen = 0, channel = 0;
    while (count < wanted && ChooseCut(boxes, count, &chosen, &channel)) {
        SortCells(histogram, &boxes[chosen], channel);
        Cut(histogram->cells, channel, &boxes[chosen], &boxes[count]);
        ++count;
    }
    for (int i = 0; i < count; ++i) palette[i] = MeanColour(histogram->cells, boxes[i], static_cast<uint32_t>(i));
    return AddWhiteAndBlack(palette, count, wanted);
}
