// The pace at which an image appears row by row.
#pragma once

#include "platform/windows_api.h"

// Lets rows appear at the pace of the settings, 4 ms each unless changed. The pace is kept from the start on, as the
// system's sleep is too coarse for a single row. Input that is going to close the viewer ends the waiting for good; it
// stays in the queue.
class RevealPace {
public:
    RevealPace() : start_(GetTickCount()) {}
    void WaitForNextRow();

private:
    DWORD start_;
    DWORD rows_ = 0;
    bool hurried_ = false;
};
