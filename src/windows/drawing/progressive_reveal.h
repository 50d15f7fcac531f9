// The pace at which an image appears row by row.
#pragma once

#include "platform/windows_api.h"

// Lets rows appear on `dc` at the pace of the settings, 4 ms each unless changed and a second at most. The pace is kept
// from the start on, as the system's sleep is too coarse for a single row. Input that is going to close the window of
// `dc` ends the waiting for good, at once; it stays in the queue. Other keys for that window are handled meanwhile.
class RevealPace {
public:
    explicit RevealPace(HDC dc);
    void WaitForNextRow();

private:
    DWORD MillisecondsLeft() const;

    HWND window_;
    DWORD start_;
    DWORD rowDelay_;  // milliseconds
    DWORD rows_ = 0;
    bool hurried_ = false;
};
