// The order and the pace in which an image appears row by row.
#pragma once

#include "platform/windows_api.h"

// The rows of an interlaced GIF in the order of their arrival: every 8th from 0, every 8th from 4, every 4th from 2,
// every 2nd from 1. The first row of a pass is not checked against the height, so that an image of less than 5 rows
// spends turns on rows that it does not have, and lacks others.
class RevealOrder {
public:
    explicit RevealOrder(int height) : height_(height) {}
    int Row() const { return row_; }  // may lie behind the last row
    void Next();

private:
    int height_;
    int pass_ = 0;
    int row_ = 0;
};

// Lets rows appear at 4 ms each, measured from the start, as the system's sleep is too coarse for a single row.
// Input that is going to close the viewer ends the waiting for good; it stays in the queue.
class RevealPace {
public:
    RevealPace() : start_(GetTickCount()) {}
    void WaitForNextRow();

private:
    DWORD start_;
    DWORD rows_ = 0;
    bool hurried_ = false;
};
