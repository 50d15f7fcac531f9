// The order in which the rows of an image follow each other in its data.
#pragma once

#include "gif/manner.h"

// The first row of a pass is not tested against the height: an image of 2 to 4 rows meets rows that it does not have,
// and some of its own rows are never met. What is written follows the same order, so that it reads back as it was.
constexpr bool kQuirkFirstRowOfPassUntested = true;

// Where the walk stays behind the last row of an interlaced image: this row takes what a file holds too much.
constexpr int kQuirkSurplusRow = 0;

// Walks over the rows of an image. Plain images go 0, 1, 2 ... for ever. Interlaced ones go by eights from row 0, by
// eights from 4, by fours from 2, by twos from 1, and then stay. In the whole manner every row is met once, and the
// walk ends beyond the image.
class RowWalk {
public:
    RowWalk(int height, bool interlaced, Manner manner = Manner::kClassic)
        : height_(height), interlaced_(interlaced), whole_(manner == Manner::kWhole) {}

    // The current row, counted from the top. May lie at or beyond the image's height.
    int Row() const { return row_; }

    void Advance() {
        if (!interlaced_) {
            ++row_;
        } else if ((row_ += kSteps[pass_]) >= height_) {
            NextPass();
            while ((whole_ || !kQuirkFirstRowOfPassUntested) && row_ >= height_ && pass_ < kLastPass) NextPass();
        }
    }

private:
    void NextPass() {
        if (pass_ < kLastPass) ++pass_;
        row_ = whole_ && pass_ == kLastPass ? height_ : kFirstRows[pass_];
    }

    static constexpr int kLastPass = 4;
    static constexpr int kSteps[kLastPass + 1] = {8, 8, 4, 2, 0};
    static constexpr int kFirstRows[kLastPass + 1] = {0, 4, 2, 1, kQuirkSurplusRow};

    int height_;
    bool interlaced_;
    bool whole_;
    int row_ = 0;
    int pass_ = 0;
};
